// A one-line JSON object, written field by field.
#include "json_writer.h"

#include <cstdio>
#include <iomanip>
#include <locale>

namespace scan {

std::string json_string(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        const unsigned char u = static_cast<unsigned char>(c);
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (u < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", u);
                    out += escaped;
                } else {
                    out += c;
                }
        }
    }
    return out + "\"";
}

std::string json_corners(const ControlPointCorners* corners) {
    if (!corners) return "null";
    std::string out = "[";
    for (int i = 0; i < 4; ++i) {
        if (i > 0) out += ",";
        out += "[" + std::to_string(corners->x[i]) + "," + std::to_string(corners->y[i]) + "]";
    }
    return out + "]";
}

void JsonObject::name(const std::string& field) {
    if (!first_) body_ << ", ";
    first_ = false;
    body_ << json_string(field) << ": ";
}

JsonObject& JsonObject::text(const std::string& field, const std::string& value) {
    name(field);
    body_ << json_string(value);
    return *this;
}

JsonObject& JsonObject::text_or_null(const std::string& field, const std::string& value) {
    return value.empty() ? null(field) : text(field, value);
}

JsonObject& JsonObject::number(const std::string& field, long long value) {
    name(field);
    body_ << value;
    return *this;
}

JsonObject& JsonObject::number_or_null(const std::string& field, long long value, bool known) {
    return known ? number(field, value) : null(field);
}

JsonObject& JsonObject::number(const std::string& field, double value, int decimals) {
    name(field);
    // JSON wants a point whatever the user's locale says.
    std::ostringstream formatted;
    formatted.imbue(std::locale::classic());
    formatted << std::fixed << std::setprecision(decimals) << value;
    body_ << formatted.str();
    return *this;
}

JsonObject& JsonObject::boolean(const std::string& field, bool value) {
    name(field);
    body_ << (value ? "true" : "false");
    return *this;
}

JsonObject& JsonObject::null(const std::string& field) {
    name(field);
    body_ << "null";
    return *this;
}

JsonObject& JsonObject::raw(const std::string& field, const std::string& json) {
    name(field);
    body_ << json;
    return *this;
}

}  // namespace scan
