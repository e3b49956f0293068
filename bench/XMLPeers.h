// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// One class per contestant, all with the same operations:
///   parse     replaces the document by parsing a text, which is not changed
///   write     returns the document as compact text
///   copy      replaces the document by a deep copy of another one
///   clear     destroys the document
///   integer   returns the value at a path as an integer
///   describe  returns names and values in document order, in the same form for all contestants

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "qor/qor.h"

#ifdef HAVE_PUGIXML
#include <pugixml.hpp>
#endif
#ifdef HAVE_TINYXML2
#include <tinyxml2.h>
#endif
#ifdef HAVE_RAPIDXML
#include <rapidxml/rapidxml.hpp>
// rapidxml_print.hpp calls these functions before it declares them, so they are declared here.
namespace rapidxml::internal
{
template<class TOut, class TChar>
TOut print_children(TOut, const xml_node<TChar>*, int, int);
template<class TOut, class TChar>
TOut print_element_node(TOut, const xml_node<TChar>*, int, int);
template<class TOut, class TChar>
TOut print_data_node(TOut, const xml_node<TChar>*, int, int);
template<class TOut, class TChar>
TOut print_cdata_node(TOut, const xml_node<TChar>*, int, int);
template<class TOut, class TChar>
TOut print_declaration_node(TOut, const xml_node<TChar>*, int, int);
template<class TOut, class TChar>
TOut print_comment_node(TOut, const xml_node<TChar>*, int, int);
template<class TOut, class TChar>
TOut print_doctype_node(TOut, const xml_node<TChar>*, int, int);
template<class TOut, class TChar>
TOut print_pi_node(TOut, const xml_node<TChar>*, int, int);
} // namespace rapidxml::internal
#include <rapidxml/rapidxml_print.hpp>
#endif
#ifdef HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/tree.h>
#endif

inline void describeElement(std::string& text, const char* name, const char* value)
{
    text.append(name).append("=").append(value).append("\n");
}

inline void describeComment(std::string& text, const std::string& content)
{
    describeElement(text, ("!--" + content + "--").c_str(), "");
}

class QortkDocument
{
public:
    static constexpr const char* NAME = "qortk";
    void parse(const std::string& text) { m_Root.parse(text); }
    std::string write() const { return m_Root.toString(); }
    void copy(const QortkDocument& other) { m_Root = other.m_Root; }
    void clear() { m_Root.clear(); }
    int integer(const std::string& path) const { return m_Root.getValueAsInteger(path, -1); }
    std::string describe() const
    {
        std::string text;
        describe(text, m_Root);
        return text;
    }

private:
    static void describe(std::string& text, const qor::XMLElement& element)
    {
        describeElement(text, element.getName().c_str(), element.getValue().c_str());
        for (const auto* child = element.getChild(""); child;
             child = element.getNextChild(child, "")) {
            describe(text, *child);
        }
    }
    qor::XMLElement m_Root{""};
};

/// The least that a tree of elements with two strings each needs: one node per element on the heap,
/// and a parser that searches each mark with std::string_view::find.
class PlainDocument
{
public:
    static constexpr const char* NAME = "plain";

    void parse(std::string_view text)
    {
        m_Root = std::make_unique<TNode>();
        std::vector<TNode*> open{m_Root.get()};
        for (std::size_t position = 0;;) {
            const std::size_t begin = text.find('<', position);
            open.back()->value += text.substr(position, begin - position);
            if (begin == std::string_view::npos) {
                return;
            }
            const bool isComment = text[begin + 1] == '!';
            position = text.find(isComment ? "-->" : ">", begin) + (isComment ? 3 : 1);
            const std::string_view tag = text.substr(begin + 1, position - begin - 2);
            if (tag[0] == '/') {
                finishValue(open.back()->value);
                if (tag.substr(1) != open.back()->name) {
                    return;
                }
                open.pop_back();
                continue;
            }
            TNode& child = open.back()->children.emplace_back();
            child.name = tag;
            if (!isComment) {
                open.push_back(&child);
            }
        }
    }

    std::string write() const
    {
        std::string text;
        write(text, m_Root->children.front());
        return text;
    }

    void copy(const PlainDocument& other)
    {
        m_Root = std::make_unique<TNode>();
        copy(*m_Root, *other.m_Root);
    }

    void clear() { m_Root.reset(); }

    int integer(const std::string& path) const
    {
        const TNode* node = &m_Root->children.front();
        for (std::size_t begin = 0; begin <= path.size();) {
            const std::size_t end = std::min(path.find('/', begin), path.size());
            const std::string_view name(path.data() + begin, end - begin);
            const auto child = std::find_if(node->children.begin(), node->children.end(),
                                            [&](const TNode& other) { return other.name == name; });
            if (child == node->children.end()) {
                return -1;
            }
            node = &*child;
            begin = end + 1;
        }
        return std::atoi(node->value.c_str());
    }

    std::string describe() const
    {
        std::string text;
        describe(text, m_Root->children.front());
        return text;
    }

private:
    struct TNode {
        std::string name;
        std::string value;
        std::list<TNode> children;
    };

    static constexpr const char* ENTITIES[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
    static constexpr std::string_view BYTES = "&<>\"'";

    static void finishValue(std::string& value)
    {
        const char* const blanks = " \t\r\n";
        value.erase(value.find_last_not_of(blanks) + 1);
        value.erase(0, value.find_first_not_of(blanks));
        std::size_t target = value.find('&');
        if (target == std::string::npos) {
            return;
        }
        for (std::size_t source = target; source < value.size(); ++target) {
            const char* const* entity =
                std::find_if(std::begin(ENTITIES), std::end(ENTITIES), [&](const char* text) {
                    return value[source] == '&' &&
                           value.compare(source, std::strlen(text), text) == 0;
                });
            const bool isEntity = entity != std::end(ENTITIES);
            const std::size_t size = isEntity ? std::strlen(*entity) : 1;
            value[target] =
                isEntity ? BYTES[static_cast<std::size_t>(entity - ENTITIES)] : value[source];
            source += size;
        }
        value.resize(target);
    }

    static void write(std::string& text, const TNode& node)
    {
        text.append("<").append(node.name).append(">");
        if (node.name[0] == '!') {
            return;
        }
        for (const TNode& child : node.children) {
            write(text, child);
        }
        for (const char byte : node.value) {
            const std::size_t index = BYTES.find(byte);
            index == std::string_view::npos ? text += byte : text += ENTITIES[index];
        }
        text.append("</").append(node.name).append(">");
    }

    static void copy(TNode& target, const TNode& source)
    {
        target.name = source.name;
        target.value = source.value;
        for (const TNode& child : source.children) {
            copy(target.children.emplace_back(), child);
        }
    }

    static void describe(std::string& text, const TNode& node)
    {
        describeElement(text, node.name.c_str(), node.value.c_str());
        for (const TNode& child : node.children) {
            describe(text, child);
        }
    }

    std::unique_ptr<TNode> m_Root;
};

#ifdef HAVE_PUGIXML
class PugixmlDocument
{
public:
    static constexpr const char* NAME = "pugixml";
    void parse(const std::string& text)
    {
        m_Document.load_buffer(text.data(), text.size(),
                               pugi::parse_default | pugi::parse_comments);
    }
    std::string write() const
    {
        struct TWriter : pugi::xml_writer {
            std::string text;
            void write(const void* data, std::size_t size) override
            {
                text.append(static_cast<const char*>(data), size);
            }
        } writer;
        m_Document.save(writer, "", pugi::format_raw | pugi::format_no_declaration);
        return writer.text;
    }
    void copy(const PugixmlDocument& other) { m_Document.reset(other.m_Document); }
    void clear() { m_Document.reset(); }
    int integer(const std::string& path) const
    {
        return m_Document.document_element().first_element_by_path(path.c_str()).text().as_int(-1);
    }
    std::string describe() const
    {
        std::string text;
        describe(text, m_Document.document_element());
        return text;
    }

private:
    static void describe(std::string& text, pugi::xml_node node)
    {
        describeElement(text, node.name(), node.text().get());
        for (pugi::xml_node child : node.children()) {
            if (child.type() == pugi::node_element) {
                describe(text, child);
            } else if (child.type() == pugi::node_comment) {
                describeComment(text, child.value());
            }
        }
    }
    pugi::xml_document m_Document;
};
#endif

#ifdef HAVE_TINYXML2
class Tinyxml2Document
{
public:
    static constexpr const char* NAME = "tinyxml2";
    void parse(const std::string& text) { m_Document.Parse(text.data(), text.size()); }
    std::string write() const
    {
        tinyxml2::XMLPrinter printer(nullptr, true);
        m_Document.Print(&printer);
        return std::string(printer.CStr(), static_cast<std::size_t>(printer.CStrSize() - 1));
    }
    void copy(const Tinyxml2Document& other) { other.m_Document.DeepCopy(&m_Document); }
    void clear() { m_Document.Clear(); }
    int integer(const std::string& path) const
    {
        const tinyxml2::XMLElement* element = m_Document.RootElement();
        for (std::size_t begin = 0; element && begin <= path.size();) {
            const std::size_t end = std::min(path.find('/', begin), path.size());
            element = element->FirstChildElement(path.substr(begin, end - begin).c_str());
            begin = end + 1;
        }
        return element ? element->IntText(-1) : -1;
    }
    std::string describe() const
    {
        std::string text;
        if (!m_Document.Error()) {
            describe(text, *m_Document.RootElement());
        }
        return text;
    }

private:
    static void describe(std::string& text, const tinyxml2::XMLElement& element)
    {
        describeElement(text, element.Name(), element.GetText() ? element.GetText() : "");
        for (const auto* child = element.FirstChild(); child; child = child->NextSibling()) {
            if (child->ToElement()) {
                describe(text, *child->ToElement());
            } else if (child->ToComment()) {
                describeComment(text, child->Value());
            }
        }
    }
    tinyxml2::XMLDocument m_Document;
};
#endif

#ifdef HAVE_RAPIDXML
class RapidxmlDocument
{
public:
    static constexpr const char* NAME = "RapidXML";
    void parse(const std::string& text)
    {
        m_Text.assign(text.c_str(), text.c_str() + text.size() + 1);
        m_Document->parse<rapidxml::parse_no_data_nodes | rapidxml::parse_comment_nodes>(
            m_Text.data());
    }
    std::string write() const
    {
        std::string text;
        rapidxml::print(std::back_inserter(text), *m_Document, rapidxml::print_no_indenting);
        return text;
    }
    void copy(const RapidxmlDocument& other)
    {
        clear();
        m_Document->append_node(m_Document->clone_node(other.m_Document->first_node()));
    }
    void clear()
    {
        m_Document = std::make_unique<rapidxml::xml_document<>>();
        m_Text = {};
    }
    int integer(const std::string& path) const
    {
        const rapidxml::xml_node<>* node = m_Document->first_node();
        for (std::size_t begin = 0; node && begin <= path.size();) {
            const std::size_t end = std::min(path.find('/', begin), path.size());
            node = node->first_node(path.data() + begin, end - begin);
            begin = end + 1;
        }
        return node ? std::atoi(node->value()) : -1;
    }
    std::string describe() const
    {
        std::string text;
        describe(text, *m_Document->first_node());
        return text;
    }

private:
    static void describe(std::string& text, const rapidxml::xml_node<>& node)
    {
        if (node.type() == rapidxml::node_comment) {
            describeComment(text, std::string(node.value(), node.value_size()));
            return;
        }
        describeElement(text, std::string(node.name(), node.name_size()).c_str(),
                        std::string(node.value(), node.value_size()).c_str());
        for (const auto* child = node.first_node(); child; child = child->next_sibling()) {
            describe(text, *child);
        }
    }
    std::vector<char> m_Text;
    std::unique_ptr<rapidxml::xml_document<>> m_Document =
        std::make_unique<rapidxml::xml_document<>>();
};
#endif

#ifdef HAVE_LIBXML2
class Libxml2Document
{
public:
    static constexpr const char* NAME = "libxml2";
    Libxml2Document() = default;
    Libxml2Document(const Libxml2Document&) = delete;
    Libxml2Document& operator=(const Libxml2Document&) = delete;
    ~Libxml2Document() { clear(); }
    void parse(const std::string& text)
    {
        clear();
        m_Document = xmlReadMemory(text.data(), static_cast<int>(text.size()), "", nullptr,
                                   XML_PARSE_NOBLANKS | XML_PARSE_HUGE);
    }
    std::string write() const
    {
        xmlChar* bytes = nullptr;
        int size = 0;
        xmlDocDumpMemory(m_Document, &bytes, &size);
        std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
        xmlFree(bytes);
        return text;
    }
    void copy(const Libxml2Document& other)
    {
        clear();
        m_Document = xmlCopyDoc(other.m_Document, 1);
    }
    void clear()
    {
        xmlFreeDoc(m_Document);
        m_Document = nullptr;
    }
    int integer(const std::string& path) const
    {
        const xmlNode* node = xmlDocGetRootElement(m_Document);
        for (std::size_t begin = 0; node && begin <= path.size();) {
            const std::size_t end = std::min(path.find('/', begin), path.size());
            const std::string name = path.substr(begin, end - begin);
            node = node->children;
            while (node && name != reinterpret_cast<const char*>(node->name)) {
                node = node->next;
            }
            begin = end + 1;
        }
        return node && node->children ? std::atoi(text(*node->children)) : -1;
    }
    std::string describe() const
    {
        std::string text;
        describe(text, *xmlDocGetRootElement(m_Document));
        return text;
    }

private:
    static const char* text(const xmlNode& node)
    {
        return reinterpret_cast<const char*>(node.content);
    }
    static void describe(std::string& text, const xmlNode& node)
    {
        std::string value;
        for (const xmlNode* child = node.children; child; child = child->next) {
            if (child->type == XML_TEXT_NODE) {
                value += Libxml2Document::text(*child);
            }
        }
        describeElement(text, reinterpret_cast<const char*>(node.name), value.c_str());
        for (const xmlNode* child = node.children; child; child = child->next) {
            if (child->type == XML_ELEMENT_NODE) {
                describe(text, *child);
            } else if (child->type == XML_COMMENT_NODE) {
                describeComment(text, Libxml2Document::text(*child));
            }
        }
    }
    xmlDoc* m_Document = nullptr;
};
#endif
