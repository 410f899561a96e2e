// Where on earth a host is.
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace veltrace::test {

/// The time zone of this process while it lives. Only its variable: it is the module that must look
/// at it again.
class TimeZone {
public:
    explicit TimeZone(const std::string& zone) {
        if (const char* before = std::getenv("TZ"); before != nullptr) {
            before_ = before;
        }
        setenv("TZ", zone.c_str(), 1);
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() {
        if (before_) {
            setenv("TZ", before_->c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

private:
    std::optional<std::string> before_;
};

}  // namespace veltrace::test
