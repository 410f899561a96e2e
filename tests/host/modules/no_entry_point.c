/* A library that is no module. */
int unrelated(void);

int unrelated(void) {
    return 7;
}
