// A one-line JSON object, written field by field in the order given.
#ifndef MORVANE_TOOLS_JSON_WRITER_H
#define MORVANE_TOOLS_JSON_WRITER_H

#include <sstream>
#include <string>

#include "morvane/morvane.h"

namespace scan {

// The text as a JSON string, quotes included.
std::string json_string(const std::string& text);

// [[x,y],[x,y],[x,y],[x,y]], or null when `corners` is null.
std::string json_corners(const ControlPointCorners* corners);

class JsonObject {
public:
    JsonObject& text(const std::string& name, const std::string& value);
    JsonObject& text_or_null(const std::string& name, const std::string& value);  // "" gives null
    JsonObject& number(const std::string& name, long long value);
    JsonObject& number_or_null(const std::string& name, long long value, bool known);  // null unless known
    JsonObject& number(const std::string& name, double value, int decimals);
    JsonObject& boolean(const std::string& name, bool value);
    JsonObject& null(const std::string& name);
    JsonObject& raw(const std::string& name, const std::string& json);  // already JSON
    std::string str() const { return body_.str() + "}"; }

private:
    void name(const std::string& field);
    std::ostringstream body_{"{", std::ios::ate};
    bool first_ = true;
};

}  // namespace scan

#endif
