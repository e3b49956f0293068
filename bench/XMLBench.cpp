// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

#include "Documents.h"
#include "XMLPeers.h"

namespace
{

constexpr std::size_t LARGE = 20u << 20;

struct TSource {
    const char* name;
    std::string text;
    int batch;      ///< documents per timed step; more than one for small documents
    int iterations; ///< fixed, because the untimed preparation may take far longer than a step
};

const std::vector<TSource>& sources()
{
    static const std::vector<TSource> list = {
        {"flat", documents::flatRecords(LARGE), 1, 5},
        {"entities", documents::textWithEntities(LARGE), 1, 5},
        {"comments", documents::recordsWithComments(1u << 20), 1, 20},
        {"deep", documents::nestedElements(400), 100, 20},
        {"config", documents::configuration(), 200, 20},
    };
    return list;
}

/// Whether steps reuse freed memory of earlier steps (option --used-heap).
bool reusesHeap = false;

/// Returns freed memory to the system, so that each step starts with a heap like that of a new
/// process. Otherwise the results would depend on earlier steps.
void trimHeap()
{
#if defined(__GLIBC__)
    if (!reusesHeap) {
        malloc_trim(0);
    }
#endif
}

/// Times an action on each document of a batch, without the time of the preparation.
template<typename TDocument, typename TPrepare, typename TAction>
void timeBatch(benchmark::State& state, const TSource& source, TPrepare prepare, TAction action)
{
    std::vector<TDocument> batch(static_cast<std::size_t>(source.batch));
    for (auto _ : state) {
        for (TDocument& document : batch) {
            document.clear();
        }
        trimHeap();
        for (TDocument& document : batch) {
            prepare(document);
        }
        const auto begin = std::chrono::steady_clock::now();
        for (TDocument& document : batch) {
            action(document);
        }
        const auto end = std::chrono::steady_clock::now();
        state.SetIterationTime(std::chrono::duration<double>(end - begin).count() / source.batch);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(source.text.size()) * state.iterations());
}

/// Ends the program if a contestant has other results than the first one.
/// @return false if it cannot read the document
template<typename TDocument>
bool checkContent(const TSource& source)
{
    TDocument document;
    document.parse(source.text);
    static std::vector<std::string> contents(sources().size());
    std::string& expected = contents[static_cast<std::size_t>(&source - sources().data())];
    const std::string content = document.describe();
    if (content.empty()) {
        std::cerr << TDocument::NAME << " cannot read " << source.name << '\n';
        return false;
    }
    if (expected.empty()) {
        expected = content;
    }
    TDocument rewritten;
    rewritten.parse(document.write());
    TDocument copied;
    copied.copy(document);
    if (content != expected || rewritten.describe() != expected || copied.describe() != expected) {
        std::cerr << TDocument::NAME << " has a different result for " << source.name << '\n';
        std::exit(1);
    }
    return true;
}

template<typename TDocument>
void addDocumentBenchmarks(const TSource& source)
{
    if (!checkContent<TDocument>(source)) {
        return;
    }
    const auto add = [&source](const char* work, auto run) {
        const std::string name = std::string(work) + '/' + source.name + '/' + TDocument::NAME;
        benchmark::RegisterBenchmark(name.c_str(), run)
            ->UseManualTime()
            ->Iterations(source.iterations);
    };
    const auto clear = [](TDocument& document) { document.clear(); };
    const auto parse = [&source](TDocument& document) { document.parse(source.text); };
    const auto nothing = [](TDocument&) {};

    add("parse", [=, &source](benchmark::State& state) {
        timeBatch<TDocument>(state, source, nothing, parse);
    });
    add("destroy", [=, &source](benchmark::State& state) {
        timeBatch<TDocument>(state, source, parse, clear);
    });
    add("write", [=, &source](benchmark::State& state) {
        TDocument document;
        parse(document);
        timeBatch<TDocument>(state, source, nothing, [&document](TDocument&) {
            benchmark::DoNotOptimize(document.write());
        });
    });
    add("copy", [=, &source](benchmark::State& state) {
        TDocument document;
        parse(document);
        timeBatch<TDocument>(state, source, nothing,
                             [&document](TDocument& copy) { copy.copy(document); });
    });
}

template<typename TDocument>
void addLookup()
{
    const std::string name = std::string("lookup/config/") + TDocument::NAME;
    benchmark::RegisterBenchmark(name.c_str(), [](benchmark::State& state) {
        TDocument document;
        document.parse(documents::configuration());
        const std::string path = "group7/height";
        if (document.integer(path) != 487) {
            state.SkipWithError("wrong value");
        }
        for (auto _ : state) {
            benchmark::DoNotOptimize(document.integer(path));
        }
    });
}

template<typename... TDocuments>
void addAll()
{
    for (const TSource& source : sources()) {
        (addDocumentBenchmarks<TDocuments>(source), ...);
    }
    (addLookup<TDocuments>(), ...);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (argc > 1 && std::string(argv[argc - 1]) == "--used-heap") {
        reusesHeap = true;
        --argc;
    }
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    addAll<QortkDocument, PlainDocument
#ifdef HAVE_PUGIXML
           ,
           PugixmlDocument
#endif
#ifdef HAVE_TINYXML2
           ,
           Tinyxml2Document
#endif
#ifdef HAVE_RAPIDXML
           ,
           RapidxmlDocument
#endif
#ifdef HAVE_LIBXML2
           ,
           Libxml2Document
#endif
           >();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
