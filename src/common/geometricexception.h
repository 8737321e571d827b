// The exception of the algorithms' resource and parameter failures: it carries
// one message text, which is the whole of what a caller is told.
#ifndef MORVANE_COMMON_GEOMETRICEXCEPTION_H
#define MORVANE_COMMON_GEOMETRICEXCEPTION_H

#include <string>

namespace geometric {

class Geometricexception {
public:
    explicit Geometricexception(const std::string& message) : message(message) {}
    const std::string& get_message() const { return message; }
    const char* what() const { return message.c_str(); }

private:
    std::string message;
};

}  // namespace geometric

#endif
