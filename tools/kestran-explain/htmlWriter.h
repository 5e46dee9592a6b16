// HTML and SVG, written element by element. All text and all values of attributes pass
// through here, and nowhere else are they escaped.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

class HtmlWriter {
public:
    struct Attribute {
        std::string_view name;
        std::string value;
    };
    using Attributes = std::initializer_list<Attribute>;

    // An open element; it is closed at the end of the object.
    class Element {
    public:
        Element(HtmlWriter& _writer, std::string_view _name) : writer(_writer), name(_name) {}
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;
        ~Element();

    private:
        HtmlWriter& writer;
        std::string_view name; // a literal
    };

    // `name` must be a literal.
    [[nodiscard]] Element open(std::string_view name, Attributes attributes = {});
    // A whole element with text, or one that never holds anything.
    void add(std::string_view name, Attributes attributes, std::string_view text);
    void addEmpty(std::string_view name, Attributes attributes = {});
    void addText(std::string_view text);
    // Markup, styles and scripts of our own, unescaped.
    void addVerbatim(std::string_view markup) { result += markup; }

    const std::string& getResult() const { return result; }

private:
    void begin(std::string_view name, Attributes attributes);
    void escape(std::string_view text);

    std::string result;
};
