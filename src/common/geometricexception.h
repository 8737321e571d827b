// The exception of the algorithms' resource and parameter failures: it carries
// one message text, which is the whole of what a caller is told. It derives
// from std::exception so that a caller outside the library, which cannot name
// this type, still catches it and reads the text through what().
#ifndef MORVANE_COMMON_GEOMETRICEXCEPTION_H
#define MORVANE_COMMON_GEOMETRICEXCEPTION_H

#include <exception>
#include <string>

namespace geometric {

class Geometricexception : public std::exception {
public:
    explicit Geometricexception(const std::string& message) : message(message) {}
    const std::string& get_message() const { return message; }
    const char* what() const noexcept override { return message.c_str(); }

private:
    std::string message;
};

}  // namespace geometric

#endif
