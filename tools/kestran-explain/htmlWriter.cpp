#include "kestran-explain/htmlWriter.h"

HtmlWriter::Element::~Element() {
    writer.result.append("</").append(name).append(">");
}

HtmlWriter::Element HtmlWriter::open(std::string_view name, Attributes attributes) {
    begin(name, attributes);
    result += '>';
    return {*this, name};
}

void HtmlWriter::add(std::string_view name, Attributes attributes, std::string_view text) {
    const Element element = open(name, attributes);
    addText(text);
}

void HtmlWriter::addEmpty(std::string_view name, Attributes attributes) {
    begin(name, attributes);
    result += "/>";
}

void HtmlWriter::addText(std::string_view text) {
    escape(text);
}

void HtmlWriter::begin(std::string_view name, Attributes attributes) {
    result.append("<").append(name);
    for (const Attribute& attribute : attributes) {
        result.append(" ").append(attribute.name).append("=\"");
        escape(attribute.value);
        result += '"';
    }
}

void HtmlWriter::escape(std::string_view text) {
    for (const char c : text) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default:
            result += c;
        }
    }
}
