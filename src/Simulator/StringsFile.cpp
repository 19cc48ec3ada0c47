#include "Simulator/StringsFile.h"

#include <cctype>
#include <cstdint>

namespace vantro::sim {

namespace {

void appendUTF8(std::string& out, std::uint32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    std::optional<Value::Dictionary> parse() {
        Value::Dictionary table;
        for (;;) {
            if (!skipSpaceAndComments()) return std::nullopt;
            if (atEnd()) return table;
            auto key = token();
            if (!key || !skipSpaceAndComments()) return std::nullopt;
            if (peek() == ';') {
                ++pos_;
                table.insert_or_assign(*key, Value(*key));
                continue;
            }
            if (peek() != '=') return std::nullopt;
            ++pos_;
            if (!skipSpaceAndComments()) return std::nullopt;
            auto value = token();
            if (!value || !skipSpaceAndComments() || peek() != ';') return std::nullopt;
            ++pos_;
            table.insert_or_assign(*key, Value(*value));
        }
    }

private:
    bool atEnd() const { return pos_ >= text_.size(); }
    char peek() const { return atEnd() ? '\0' : text_[pos_]; }

    // False for an unterminated block comment.
    bool skipSpaceAndComments() {
        while (!atEnd()) {
            char c = text_[pos_];
            if (std::isspace(static_cast<unsigned char>(c))) {
                ++pos_;
            } else if (text_.substr(pos_, 2) == "//") {
                while (!atEnd() && text_[pos_] != '\n') ++pos_;
            } else if (text_.substr(pos_, 2) == "/*") {
                auto end = text_.find("*/", pos_ + 2);
                if (end == std::string_view::npos) return false;
                pos_ = end + 2;
            } else {
                break;
            }
        }
        return true;
    }

    std::optional<std::string> token() {
        if (peek() == '"') return quoted();
        std::string word;
        while (!atEnd()) {
            char c = text_[pos_];
            if (std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.' || c == '$' || c == '/' || c == ':' || c == '-')
                word += c, ++pos_;
            else
                break;
        }
        if (word.empty()) return std::nullopt;
        return word;
    }

    std::optional<std::string> quoted() {
        ++pos_;
        std::string out;
        while (!atEnd()) {
            char c = text_[pos_++];
            if (c == '"') return out;
            if (c != '\\') {
                out += c;
                continue;
            }
            if (atEnd()) return std::nullopt;
            char e = text_[pos_++];
            switch (e) {
            case 'n': out += '\n'; break;
            case 't': out += '\t'; break;
            case 'r': out += '\r'; break;
            case 'U':
            case 'u': {
                if (pos_ + 4 > text_.size()) return std::nullopt;
                std::uint32_t cp = 0;
                for (int i = 0; i < 4; ++i) {
                    char h = text_[pos_++];
                    if (!std::isxdigit(static_cast<unsigned char>(h))) return std::nullopt;
                    cp = cp * 16 + static_cast<std::uint32_t>(std::isdigit(static_cast<unsigned char>(h)) ? h - '0' : (std::tolower(h) - 'a' + 10));
                }
                appendUTF8(out, cp);
                break;
            }
            default: out += e; break;  // \" \\ \' and any other escaped character stand for themselves
            }
        }
        return std::nullopt;
    }

    std::string_view text_;
    std::size_t pos_ = 0;
};

}  // namespace

std::string StringsFile::toUTF8(std::string_view bytes) {
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    if (bytes.size() >= 3 && byte(0) == 0xEF && byte(1) == 0xBB && byte(2) == 0xBF) return std::string(bytes.substr(3));
    bool little = bytes.size() >= 2 && byte(0) == 0xFF && byte(1) == 0xFE;
    bool big = bytes.size() >= 2 && byte(0) == 0xFE && byte(1) == 0xFF;
    if (!little && !big) return std::string(bytes);
    std::string out;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        std::uint32_t unit = little ? (byte(i) | (byte(i + 1) << 8)) : ((byte(i) << 8) | byte(i + 1));
        if (unit >= 0xD800 && unit < 0xDC00 && i + 3 < bytes.size()) {
            std::uint32_t low = little ? (byte(i + 2) | (byte(i + 3) << 8)) : ((byte(i + 2) << 8) | byte(i + 3));
            if (low >= 0xDC00 && low < 0xE000) {
                unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            }
        }
        appendUTF8(out, unit);
    }
    return out;
}

std::optional<Value::Dictionary> StringsFile::parse(std::string_view bytes) {
    std::string text = toUTF8(bytes);
    return Parser(text).parse();
}

}  // namespace vantro::sim
