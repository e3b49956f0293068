// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "Documents.h"
#include "qor/qor.h"

#ifdef HAVE_LIBXML2
#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#endif

// Compares the validation of documents in memory. The template and the schema are parsed
// beforehand. Both limit the names, the numbers of children and the lengths of values in the same
// way.

namespace
{

/// A leaf of a record or a group, with the maximum length of its value.
struct TField {
    const char* name;
    int maxLength;
};

struct TSource {
    const char* name;
    std::string text;
    std::string root;
    std::vector<TField> rootFields;
    std::vector<std::string> groups; ///< children of the root that have the fields
    int maxGroups;                   ///< of each name
    std::vector<TField> fields;
};

std::vector<TSource> sources()
{
    std::vector<std::string> groups;
    for (int group = 0; group < 12; ++group) {
        groups.push_back("group" + std::to_string(group));
    }
    return {
        {"flat",
         documents::flatRecords(2u << 20),
         "records",
         {},
         {"record"},
         1000000,
         {{"id", 10}, {"name", 40}, {"berth", 3}, {"draught", 7}, {"remarks", 80}, {"moored", 5}}},
        {"config",
         documents::configuration(),
         "configuration",
         {{"version", 10}},
         groups,
         1,
         {{"enabled", 5},
          {"title", 60},
          {"width", 5},
          {"height", 5},
          {"gamma", 10},
          {"path", 60},
          {"volume", 10},
          {"lastFile", 60}}}};
}

std::string templateOf(const TSource& source)
{
    const auto fields = [](const std::vector<TField>& list) {
        std::string text;
        for (const TField& field : list) {
            text += std::string("<") + field.name + ">1:0-" + std::to_string(field.maxLength) +
                    "</" + field.name + ">";
        }
        return text;
    };
    std::string text = "<t>0:0" + fields(source.rootFields);
    for (const std::string& group : source.groups) {
        text += "<" + group + ">0-" + std::to_string(source.maxGroups) + ":0" +
                fields(source.fields) + "</" + group + ">";
    }
    return text + "</t>";
}

class QortkValidation
{
public:
    static constexpr const char* NAME = "qortk";
    explicit QortkValidation(const TSource& source) : m_Document(""), m_Template("")
    {
        m_Document.parse(source.text);
        m_Template.parse(templateOf(source));
    }
    bool isValid() const { return m_Document.validate(&m_Template); }

private:
    qor::XMLElement m_Document;
    qor::XMLElement m_Template;
};

#ifdef HAVE_LIBXML2

std::string schemaOf(const TSource& source)
{
    const auto element = [](const std::string& name, int maxCount, const std::string& type) {
        return "<xs:element name='" + name + "' minOccurs='" + (maxCount == 1 ? "1" : "0") +
               "' maxOccurs='" + std::to_string(maxCount) + "'>" + type + "</xs:element>";
    };
    const auto sequence = [](const std::string& content) {
        return "<xs:complexType><xs:sequence>" + content + "</xs:sequence></xs:complexType>";
    };
    const auto fields = [&element](const std::vector<TField>& list) {
        std::string text;
        for (const TField& field : list) {
            text += element(
                field.name, 1,
                "<xs:simpleType><xs:restriction base='xs:string'><xs:maxLength value='" +
                    std::to_string(field.maxLength) + "'/></xs:restriction></xs:simpleType>");
        }
        return text;
    };
    std::string content = fields(source.rootFields);
    for (const std::string& group : source.groups) {
        content += element(group, source.maxGroups, sequence(fields(source.fields)));
    }
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='" +
           source.root + "'>" + sequence(content) + "</xs:element></xs:schema>";
}

class Libxml2Validation
{
public:
    static constexpr const char* NAME = "libxml2";
    explicit Libxml2Validation(const TSource& source)
        : m_Document(xmlReadMemory(source.text.data(), static_cast<int>(source.text.size()), "",
                                   nullptr, XML_PARSE_NOBLANKS))
    {
        const std::string schema = schemaOf(source);
        xmlSchemaParserCtxt* const parser =
            xmlSchemaNewMemParserCtxt(schema.data(), static_cast<int>(schema.size()));
        m_Schema = xmlSchemaParse(parser);
        xmlSchemaFreeParserCtxt(parser);
        m_Context = xmlSchemaNewValidCtxt(m_Schema);
    }
    Libxml2Validation(const Libxml2Validation&) = delete;
    Libxml2Validation& operator=(const Libxml2Validation&) = delete;
    ~Libxml2Validation()
    {
        xmlSchemaFreeValidCtxt(m_Context);
        xmlSchemaFree(m_Schema);
        xmlFreeDoc(m_Document);
    }
    bool isValid() const { return xmlSchemaValidateDoc(m_Context, m_Document) == 0; }

private:
    xmlDoc* m_Document;
    xmlSchema* m_Schema;
    xmlSchemaValidCtxt* m_Context;
};

#endif

template<typename TValidation>
void add(const TSource& source)
{
    if (!TValidation(source).isValid()) {
        std::cerr << TValidation::NAME << " rejects " << source.name << '\n';
        std::exit(1);
    }
    const std::string name = std::string("validate/") + source.name + '/' + TValidation::NAME;
    benchmark::RegisterBenchmark(name.c_str(), [source](benchmark::State& state) {
        const TValidation validation(source);
        for (auto _ : state) {
            benchmark::DoNotOptimize(validation.isValid());
        }
    });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for (const TSource& source : sources()) {
        add<QortkValidation>(source);
#ifdef HAVE_LIBXML2
        add<Libxml2Validation>(source);
#endif
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
