#pragma once
// A small reader for the few elements the cameras' SOAP answers carry. It
// finds elements by their local name whatever prefix a camera gives them,
// and never reads past the text it is given: broken XML yields fewer
// elements, never a fault.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace onvif {

struct XmlElement {
    std::string_view localName;
    std::string_view attributes;   // the raw text after the name in the start tag
    std::string_view inner;        // between the start and the end tag; empty for <x/>
};

// Every complete element of that local name, in document order; elements
// inside a found one are found as well.
std::vector<XmlElement> findAll(std::string_view xml, std::string_view localName);
std::optional<XmlElement> findFirst(std::string_view xml, std::string_view localName);
// The first element along a path of local names, each looked for inside the
// one before.
std::optional<XmlElement> findPath(std::string_view xml, std::initializer_list<std::string_view> path);
// The text of the element at the path: CDATA unwrapped, entities decoded,
// blanks trimmed.
std::optional<std::string> textAt(std::string_view xml, std::initializer_list<std::string_view> path);
std::string elementText(std::string_view inner);
// An attribute by its local name, decoded.
std::optional<std::string> attribute(const XmlElement& element, std::string_view localName);

std::string decodeEntities(std::string_view text);
std::string escapeXml(std::string_view text);
std::string_view trimBlanks(std::string_view text);

} // namespace onvif
