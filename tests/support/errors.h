// The text of a failure: the library throws C strings, std::string and
// standard exceptions, and the tests check the exact words.
#ifndef MORVANE_TESTS_SUPPORT_ERRORS_H
#define MORVANE_TESTS_SUPPORT_ERRORS_H

#include <exception>
#include <string>

namespace support {

inline std::string text_of(const char* text) { return text; }
inline std::string text_of(const std::string& text) { return text; }
inline std::string text_of(const std::exception& error) { return error.what(); }

// What call throws as Error, or "no exception" when it returns.
template <typename Error, typename Call>
std::string thrown_text(Call call) {
    try {
        call();
    } catch (const Error& error) {
        return text_of(error);
    }
    return "no exception";
}

}  // namespace support

#endif
