// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <charconv>
#include <climits>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "qor/Configuration.h"
#include "qor/XMLElement.h"

#ifdef HAVE_BOOST
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#endif

#ifdef HAVE_PUGIXML
#include <pugixml.hpp>
#endif

// Compares reading and writing one value by name, and saving and loading all values as XML, with a
// property tree, maps, and an XML library that looks up one path per value.

namespace
{

enum class Shape { FLAT, GROUPS };

/// @return names of parameters, all on one level or in groups of ten
std::vector<std::string> makeNames(std::size_t count, Shape shape)
{
    constexpr std::size_t GROUP_SIZE = 10;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string group =
            shape == Shape::FLAT ? "" : "group" + std::to_string(i / GROUP_SIZE) + "/";
        names.push_back(group + "parameter" + std::to_string(i));
    }
    return names;
}

/// Returns the names in a fixed order other than that of creation, so that accesses are not
/// sequential in memory.
class Walk
{
public:
    explicit Walk(const std::vector<std::string>& names) : m_Names(names) {}

    const std::string& next()
    {
        constexpr std::size_t STEP = 7919;
        m_Index = (m_Index + STEP) % m_Names.size();
        return m_Names[m_Index];
    }

private:
    const std::vector<std::string>& m_Names;
    std::size_t m_Index = 0;
};

std::vector<std::string> makeNames(const benchmark::State& state)
{
    return makeNames(static_cast<std::size_t>(state.range(0)), Shape::FLAT);
}

std::unique_ptr<qor::Configuration> makeTable(const std::vector<std::string>& names)
{
    auto table = std::make_unique<qor::Configuration>(1);
    int number = 0;
    for (const std::string& name : names) {
        table->addIntegerParameter(name, ++number, 0, INT_MAX, 0);
    }
    return table;
}

void getOwn(benchmark::State& state)
{
    const std::vector<std::string> names = makeNames(state);
    const auto table = makeTable(names);
    Walk walk(names);
    for (auto _ : state) {
        benchmark::DoNotOptimize(table->getInteger(walk.next()));
    }
}

void setOwn(benchmark::State& state)
{
    const std::vector<std::string> names = makeNames(state);
    const auto table = makeTable(names);
    Walk walk(names);
    int number = 0;
    for (auto _ : state) {
        table->setInteger(walk.next(), ++number);
    }
}

template<typename TMap>
TMap makeMap(const std::vector<std::string>& names)
{
    TMap map;
    for (const std::string& name : names) {
        map.emplace(name, static_cast<int>(map.size()));
    }
    return map;
}

template<typename TMap>
void getFromMap(benchmark::State& state)
{
    const std::vector<std::string> names = makeNames(state);
    const auto map = makeMap<TMap>(names);
    Walk walk(names);
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(walk.next())->second);
    }
}

template<typename TMap>
void setInMap(benchmark::State& state)
{
    const std::vector<std::string> names = makeNames(state);
    auto map = makeMap<TMap>(names);
    Walk walk(names);
    int number = 0;
    for (auto _ : state) {
        map.find(walk.next())->second = ++number;
    }
}

/// Lower bounds of saving and loading: the XML work without the configuration. The elements exist
/// already, and are only copied, written and parsed.
void saveElements(benchmark::State& state, Shape shape)
{
    const auto table = makeTable(makeNames(1000, shape));
    qor::XMLElement root("configuration");
    table->save(&root);
    for (auto _ : state) {
        const qor::XMLElement copy(root);
        benchmark::DoNotOptimize(copy.toString().size());
    }
}

void loadElements(benchmark::State& state, Shape shape)
{
    const auto table = makeTable(makeNames(1000, shape));
    qor::XMLElement root("configuration");
    table->save(&root);
    const std::string text = root.toString();
    for (auto _ : state) {
        qor::XMLElement element("");
        benchmark::DoNotOptimize(element.parse(text));
    }
}

std::string saveTable(const qor::Configuration& table)
{
    qor::XMLElement root("configuration");
    table.save(&root);
    return root.toString();
}

void saveOwn(benchmark::State& state, Shape shape)
{
    const auto table = makeTable(makeNames(1000, shape));
    for (auto _ : state) {
        benchmark::DoNotOptimize(saveTable(*table).size());
    }
}

void loadOwn(benchmark::State& state, Shape shape)
{
    const std::vector<std::string> names = makeNames(1000, shape);
    const auto table = makeTable(names);
    qor::XMLElement source("configuration");
    table->save(&source);
    const std::string text = source.toString();
    for (auto _ : state) {
        qor::XMLElement root("");
        root.parse(text);
        table->load(&root);
    }
    if (table->getInteger(names.back()) != 1000) {
        state.SkipWithError("the last value was not read");
    }
}

/// The least that loading and saving needs, written for this table alone: integers, at most one
/// level of groups, no entities and no tree.
class OnePass
{
public:
    explicit OnePass(const std::vector<std::string>& names) : m_Names(names)
    {
        for (const std::string& name : names) {
            m_Index.emplace(name, m_Values.size());
            m_Values.push_back(static_cast<int>(m_Values.size()) + 1);
        }
    }

    int value(const std::string& name) const { return m_Values[m_Index.at(name)]; }

    std::string save() const
    {
        struct TGroup {
            std::string_view name;
            std::string text;
        };
        std::vector<TGroup> groups;
        std::unordered_map<std::string_view, std::size_t> groupIndex;
        for (std::size_t i = 0; i < m_Names.size(); ++i) {
            const std::string_view path = m_Names[i];
            const std::size_t nameBegin = path.rfind('/') + 1; // 0 without a slash
            const std::string_view group = path.substr(0, nameBegin == 0 ? 0 : nameBegin - 1);
            const auto [place, isNew] = groupIndex.try_emplace(group, groups.size());
            if (isNew) {
                groups.push_back({group, {}});
            }
            char digits[16];
            const char* const end = std::to_chars(digits, digits + sizeof digits, m_Values[i]).ptr;
            addElement(groups[place->second].text, path.substr(nameBegin),
                       {digits, static_cast<std::size_t>(end - digits)});
        }
        std::string text = "<configuration><version>1</version>";
        for (const TGroup& group : groups) {
            if (group.name.empty()) {
                text += group.text;
            } else {
                addElement(text, group.name, group.text);
            }
        }
        return text += "</configuration>";
    }

    void load(const std::string& text)
    {
        std::string path;
        std::size_t position = text.find('>') + 1; // after the tag of the root
        for (;;) {
            const std::size_t tag = text.find('<', position);
            const std::size_t end = text.find('>', tag);
            if (text[tag + 1] != '/') {
                path.append(path.empty() ? "" : "/").append(text, tag + 1, end - tag - 1);
                position = end + 1;
                continue;
            }
            if (path.empty()) {
                return;
            }
            const auto parameter = tag == position ? m_Index.end() : m_Index.find(path);
            if (parameter != m_Index.end()) {
                std::from_chars(&text[position], &text[tag], m_Values[parameter->second]);
            }
            const std::size_t slash = path.rfind('/');
            path.resize(slash == std::string::npos ? 0 : slash);
            position = end + 1;
        }
    }

private:
    static void addElement(std::string& text, std::string_view name, std::string_view content)
    {
        (text += '<').append(name) += '>';
        text.append(content).append("</").append(name) += '>';
    }

    const std::vector<std::string>& m_Names;
    std::unordered_map<std::string, std::size_t> m_Index;
    std::vector<int> m_Values;
};

void saveOnePass(benchmark::State& state, Shape shape)
{
    const std::vector<std::string> names = makeNames(1000, shape);
    const OnePass table(names);
    if (table.save() != saveTable(*makeTable(names))) {
        state.SkipWithError("the texts differ");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(table.save().size());
    }
}

void loadOnePass(benchmark::State& state, Shape shape)
{
    const std::vector<std::string> names = makeNames(1000, shape);
    OnePass table(names);
    const std::string text = saveTable(*makeTable(names));
    for (auto _ : state) {
        table.load(text);
    }
    if (table.value(names.back()) != 1000) {
        state.SkipWithError("the last value was not read");
    }
}

void registerWork(const std::string& contestant, void (*save)(benchmark::State&, Shape),
                  void (*load)(benchmark::State&, Shape))
{
    for (const Shape shape : {Shape::FLAT, Shape::GROUPS}) {
        const std::string source = shape == Shape::FLAT ? "flat/" : "groups/";
        benchmark::RegisterBenchmark(("save/" + source + contestant).c_str(), save, shape);
        benchmark::RegisterBenchmark(("load/" + source + contestant).c_str(), load, shape);
    }
}

/// Registers the access to tables of different sizes as separate works.
void registerAccess(const std::string& contestant, void (*get)(benchmark::State&),
                    void (*set)(benchmark::State&))
{
    for (const int count : {10, 100, 1000}) {
        const std::string source = "of " + std::to_string(count) + "/";
        benchmark::RegisterBenchmark(("get/" + source + contestant).c_str(), get)->Arg(count);
        benchmark::RegisterBenchmark(("set/" + source + contestant).c_str(), set)->Arg(count);
    }
}

#ifdef HAVE_BOOST

using TTree = boost::property_tree::ptree;

TTree::path_type makePath(const std::string& name)
{
    return TTree::path_type(name, '/');
}

TTree makeTree(const std::vector<std::string>& names)
{
    TTree tree;
    int number = 0;
    for (const std::string& name : names) {
        tree.put(makePath("configuration/" + name), ++number);
    }
    return tree;
}

void getBoost(benchmark::State& state)
{
    const std::vector<std::string> names = makeNames(state);
    const TTree tree = makeTree(names);
    const TTree& root = tree.get_child("configuration");
    Walk walk(names);
    for (auto _ : state) {
        benchmark::DoNotOptimize(root.get<int>(walk.next()));
    }
}

void setBoost(benchmark::State& state)
{
    const std::vector<std::string> names = makeNames(state);
    TTree tree = makeTree(names);
    TTree& root = tree.get_child("configuration");
    Walk walk(names);
    int number = 0;
    for (auto _ : state) {
        root.put(walk.next(), ++number);
    }
}

void saveBoost(benchmark::State& state, Shape shape)
{
    const std::vector<std::string> names = makeNames(1000, shape);
    for (auto _ : state) {
        std::ostringstream text;
        write_xml(text, makeTree(names));
        benchmark::DoNotOptimize(text.str().size());
    }
}

void loadBoost(benchmark::State& state, Shape shape)
{
    const std::vector<std::string> names = makeNames(1000, shape);
    std::ostringstream text;
    write_xml(text, makeTree(names));
    int number = 0;
    for (auto _ : state) {
        std::istringstream source(text.str());
        TTree tree;
        read_xml(source, tree);
        for (const std::string& name : names) {
            number = tree.get<int>(makePath("configuration/" + name));
        }
    }
    if (number != 1000) {
        state.SkipWithError("the last value was not read");
    }
}

#endif

#ifdef HAVE_PUGIXML

pugi::xml_node findOrCreate(pugi::xml_node node, const std::string& path)
{
    for (std::size_t begin = 0; begin != std::string::npos;) {
        const std::size_t slash = path.find('/', begin);
        const std::string name = path.substr(begin, slash - begin);
        const pugi::xml_node child = node.child(name.c_str());
        node = child ? child : node.append_child(name.c_str());
        begin = slash == std::string::npos ? slash : slash + 1;
    }
    return node;
}

std::string savePugi(const std::vector<std::string>& names)
{
    pugi::xml_document document;
    const pugi::xml_node root = document.append_child("configuration");
    int number = 0;
    for (const std::string& name : names) {
        findOrCreate(root, name).text().set(++number);
    }
    std::ostringstream text;
    document.save(text, "\t");
    return text.str();
}

void savePugi(benchmark::State& state, Shape shape)
{
    const std::vector<std::string> names = makeNames(1000, shape);
    for (auto _ : state) {
        benchmark::DoNotOptimize(savePugi(names).size());
    }
}

void loadPugi(benchmark::State& state, Shape shape)
{
    const std::vector<std::string> names = makeNames(1000, shape);
    const std::string text = savePugi(names);
    int number = 0;
    for (auto _ : state) {
        pugi::xml_document document;
        document.load_buffer(text.data(), text.size());
        const pugi::xml_node root = document.child("configuration");
        for (const std::string& name : names) {
            number = root.first_element_by_path(name.c_str()).text().as_int();
        }
    }
    if (number != 1000) {
        state.SkipWithError("the last value was not read");
    }
}

#endif

} // namespace

int main(int argumentCount, char** arguments)
{
    registerAccess("qortk", getOwn, setOwn);
    using TMap = std::map<std::string, int>;
    using THashMap = std::unordered_map<std::string, int>;
    registerAccess("std::map", getFromMap<TMap>, setInMap<TMap>);
    registerAccess("std::unordered_map", getFromMap<THashMap>, setInMap<THashMap>);
    registerWork("qortk", saveOwn, loadOwn);
    registerWork("XML alone", saveElements, loadElements);
    registerWork("one pass", saveOnePass, loadOnePass);
#ifdef HAVE_BOOST
    registerAccess("Boost.PropertyTree", getBoost, setBoost);
    registerWork("Boost.PropertyTree", saveBoost, loadBoost);
#endif
#ifdef HAVE_PUGIXML
    registerWork("pugixml", savePugi, loadPugi);
#endif
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
