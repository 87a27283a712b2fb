#include "xml_tags.h"

#include <cstdint>

namespace onvif {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view localPart(std::string_view qualified)
{
    const std::size_t colon = qualified.rfind(':');
    return colon == std::string_view::npos ? qualified : qualified.substr(colon + 1);
}

// One tag of the text, starting at a '<'.
struct Tag {
    enum Kind { start, end, other } kind = other;
    std::string_view name;         // qualified
    std::string_view attributes;
    bool selfClosing = false;
    std::size_t next = std::string_view::npos;   // just after the tag; npos when cut short
};

std::size_t skipPast(std::string_view xml, std::size_t from, std::string_view marker)
{
    const std::size_t at = xml.find(marker, from);
    return at == std::string_view::npos ? at : at + marker.size();
}

Tag readTag(std::string_view xml, std::size_t at)
{
    Tag tag;
    std::string_view rest = xml.substr(at);
    if (rest.starts_with("<!--")) {
        tag.next = skipPast(xml, at + 4, "-->");
        return tag;
    }
    if (rest.starts_with("<![CDATA[")) {
        tag.next = skipPast(xml, at + 9, "]]>");
        return tag;
    }
    if (rest.starts_with("<?")) {
        tag.next = skipPast(xml, at + 2, "?>");
        return tag;
    }
    if (rest.starts_with("<!")) {
        tag.next = skipPast(xml, at + 2, ">");
        return tag;
    }
    std::size_t p = at + 1;
    if (p < xml.size() && xml[p] == '/') {
        tag.kind = Tag::end;
        ++p;
    } else {
        tag.kind = Tag::start;
    }
    const std::size_t nameStart = p;
    while (p < xml.size() && !isBlank(xml[p]) && xml[p] != '/' && xml[p] != '>')
        ++p;
    tag.name = xml.substr(nameStart, p - nameStart);
    // The end of the tag, with '>' inside quoted attribute values skipped.
    char quote = 0;
    const std::size_t attributesStart = p;
    for (; p < xml.size(); ++p) {
        const char c = xml[p];
        if (quote) {
            if (c == quote)
                quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            break;
        }
    }
    if (p >= xml.size()) {
        tag.next = std::string_view::npos;
        return tag;
    }
    std::size_t attributesEnd = p;
    if (tag.kind == Tag::start && attributesEnd > attributesStart && xml[attributesEnd - 1] == '/') {
        tag.selfClosing = true;
        --attributesEnd;
    }
    tag.attributes = xml.substr(attributesStart, attributesEnd - attributesStart);
    tag.next = p + 1;
    if (tag.name.empty())
        tag.kind = Tag::other;
    return tag;
}

// The position of the end tag that closes an element named `name` whose
// content starts at `from`; npos when it is never closed.
std::size_t findClose(std::string_view xml, std::size_t from, std::string_view name, std::size_t& after)
{
    int depth = 0;
    std::size_t p = from;
    while (p < xml.size()) {
        const std::size_t lt = xml.find('<', p);
        if (lt == std::string_view::npos)
            return std::string_view::npos;
        const Tag tag = readTag(xml, lt);
        if (tag.next == std::string_view::npos)
            return std::string_view::npos;
        if (tag.name == name) {
            if (tag.kind == Tag::start && !tag.selfClosing) {
                ++depth;
            } else if (tag.kind == Tag::end) {
                if (depth == 0) {
                    after = tag.next;
                    return lt;
                }
                --depth;
            }
        }
        p = tag.next;
    }
    return std::string_view::npos;
}

void appendUtf8(std::string& out, std::uint32_t code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x110000) {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

} // namespace

std::string_view trimBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::vector<XmlElement> findAll(std::string_view xml, std::string_view localName)
{
    std::vector<XmlElement> found;
    std::size_t p = 0;
    while (p < xml.size()) {
        const std::size_t lt = xml.find('<', p);
        if (lt == std::string_view::npos)
            break;
        const Tag tag = readTag(xml, lt);
        if (tag.next == std::string_view::npos)
            break;
        if (tag.kind == Tag::start && localPart(tag.name) == localName) {
            if (tag.selfClosing) {
                found.push_back({localPart(tag.name), tag.attributes, {}});
            } else {
                std::size_t after = 0;
                const std::size_t close = findClose(xml, tag.next, tag.name, after);
                if (close != std::string_view::npos)
                    found.push_back({localPart(tag.name), tag.attributes, xml.substr(tag.next, close - tag.next)});
            }
        }
        p = tag.next;
    }
    return found;
}

std::optional<XmlElement> findFirst(std::string_view xml, std::string_view localName)
{
    // The same walk as findAll, stopping at the first complete element.
    std::size_t p = 0;
    while (p < xml.size()) {
        const std::size_t lt = xml.find('<', p);
        if (lt == std::string_view::npos)
            break;
        const Tag tag = readTag(xml, lt);
        if (tag.next == std::string_view::npos)
            break;
        if (tag.kind == Tag::start && localPart(tag.name) == localName) {
            if (tag.selfClosing)
                return XmlElement{localPart(tag.name), tag.attributes, {}};
            std::size_t after = 0;
            const std::size_t close = findClose(xml, tag.next, tag.name, after);
            if (close != std::string_view::npos)
                return XmlElement{localPart(tag.name), tag.attributes, xml.substr(tag.next, close - tag.next)};
        }
        p = tag.next;
    }
    return std::nullopt;
}

std::optional<XmlElement> findPath(std::string_view xml, std::initializer_list<std::string_view> path)
{
    std::optional<XmlElement> element;
    std::string_view scope = xml;
    for (std::string_view name : path) {
        element = findFirst(scope, name);
        if (!element)
            return std::nullopt;
        scope = element->inner;
    }
    return element;
}

std::string elementText(std::string_view inner)
{
    std::string raw;
    std::size_t p = 0;
    // CDATA sections are taken as they stand; the rest is decoded.
    while (p < inner.size()) {
        const std::size_t cdata = inner.find("<![CDATA[", p);
        if (cdata == std::string_view::npos) {
            raw += decodeEntities(inner.substr(p));
            break;
        }
        raw += decodeEntities(inner.substr(p, cdata - p));
        const std::size_t end = inner.find("]]>", cdata + 9);
        if (end == std::string_view::npos) {
            raw += inner.substr(cdata + 9);
            break;
        }
        raw += inner.substr(cdata + 9, end - cdata - 9);
        p = end + 3;
    }
    return std::string(trimBlanks(raw));
}

std::optional<std::string> textAt(std::string_view xml, std::initializer_list<std::string_view> path)
{
    const auto element = findPath(xml, path);
    if (!element)
        return std::nullopt;
    return elementText(element->inner);
}

std::optional<std::string> attribute(const XmlElement& element, std::string_view localName)
{
    std::string_view rest = element.attributes;
    while (true) {
        rest = trimBlanks(rest);
        const std::size_t eq = rest.find('=');
        if (eq == std::string_view::npos)
            return std::nullopt;
        const std::string_view name = trimBlanks(rest.substr(0, eq));
        rest = trimBlanks(rest.substr(eq + 1));
        if (rest.empty() || (rest.front() != '"' && rest.front() != '\''))
            return std::nullopt;
        const char quote = rest.front();
        const std::size_t close = rest.find(quote, 1);
        if (close == std::string_view::npos)
            return std::nullopt;
        if (localPart(name) == localName && !name.starts_with("xmlns"))
            return decodeEntities(rest.substr(1, close - 1));
        rest = rest.substr(close + 1);
    }
}

std::string decodeEntities(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    std::size_t p = 0;
    while (p < text.size()) {
        if (text[p] != '&') {
            out += text[p++];
            continue;
        }
        const std::size_t semi = text.find(';', p);
        if (semi == std::string_view::npos || semi - p > 10) {
            out += text[p++];
            continue;
        }
        const std::string_view entity = text.substr(p + 1, semi - p - 1);
        if (entity == "lt")
            out += '<';
        else if (entity == "gt")
            out += '>';
        else if (entity == "amp")
            out += '&';
        else if (entity == "quot")
            out += '"';
        else if (entity == "apos")
            out += '\'';
        else if (entity.size() > 1 && entity[0] == '#') {
            std::uint32_t code = 0;
            bool hex = entity[1] == 'x' || entity[1] == 'X';
            bool valid = entity.size() > (hex ? 2u : 1u);
            for (std::size_t i = hex ? 2 : 1; i < entity.size() && valid; ++i) {
                const char c = entity[i];
                int digit = -1;
                if (c >= '0' && c <= '9')
                    digit = c - '0';
                else if (hex && c >= 'a' && c <= 'f')
                    digit = c - 'a' + 10;
                else if (hex && c >= 'A' && c <= 'F')
                    digit = c - 'A' + 10;
                if (digit < 0 || code > 0x10FFFF)
                    valid = false;
                else
                    code = code * (hex ? 16 : 10) + static_cast<std::uint32_t>(digit);
            }
            if (!valid || code == 0 || code > 0x10FFFF) {
                out += text.substr(p, semi - p + 1);
            } else {
                appendUtf8(out, code);
            }
        } else {
            out += text.substr(p, semi - p + 1);
        }
        p = semi + 1;
    }
    return out;
}

std::string escapeXml(std::string_view text)
{
    std::string out;
    for (char c : text) {
        switch (c) {
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '&': out += "&amp;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&apos;"; break;
        default: out += c;
        }
    }
    return out;
}

} // namespace onvif
