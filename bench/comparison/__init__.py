"""The comparison of the module and the command with their peers."""
