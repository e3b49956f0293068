// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "Documents.h"
#include "qor/qor.h"

#ifdef HAVE_ZLIB
#include <zlib.h>
#endif
#ifdef HAVE_ISAL
#include <isa-l/crc.h>
#endif
#ifdef HAVE_LIBDEFLATE
#include <libdeflate.h>
#endif
#ifdef HAVE_OPENSSL
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/md5.h>
#endif

// Compares checksums of data in one call with those of other libraries. Compares the checksum of an
// XML tree with two lower bounds: the same texts from a list, and the same bytes in one call.

namespace
{

using TBytes = std::vector<unsigned char>;

struct TSize {
    const char* name;
    std::size_t bytes;
};

constexpr TSize SIZES[] = {{"64 B", 64}, {"4 KB", 4096}, {"1 MB", 1u << 20}};

TBytes randomBytes(std::size_t size)
{
    std::mt19937 random(32);
    TBytes bytes(size);
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(random());
    }
    return bytes;
}

unsigned int sizeOf(const TBytes& data)
{
    return static_cast<unsigned int>(data.size());
}

unsigned int crcByQortk(const TBytes& data)
{
    qor::CRC32 checksum(0xFFFFFFFF);
    checksum.addRaw(data.data(), sizeOf(data));
    return ~checksum.getChecksumInteger();
}

struct TDigest {
    bool operator==(const TDigest& other) const
    {
        return std::equal(bytes, bytes + sizeof bytes, other.bytes);
    }
    unsigned char bytes[16];
};

TDigest digestByQortk(const TBytes& data)
{
    qor::MD5 digest;
    digest.addRaw(data.data(), sizeOf(data));
    digest.finalize();
    TDigest result;
    digest.getChecksumRaw(result.bytes);
    return result;
}

#ifdef HAVE_ZLIB
unsigned int crcByZlib(const TBytes& data)
{
    return static_cast<unsigned int>(crc32(0, data.data(), sizeOf(data)));
}
#endif

#ifdef HAVE_ISAL
unsigned int crcByIsal(const TBytes& data)
{
    return crc32_gzip_refl(0, data.data(), data.size());
}
#endif

#ifdef HAVE_LIBDEFLATE
unsigned int crcByLibdeflate(const TBytes& data)
{
    return libdeflate_crc32(0, data.data(), data.size());
}
#endif

#ifdef HAVE_OPENSSL
TDigest digestByOpenssl(const TBytes& data)
{
    MD5_CTX context;
    MD5_Init(&context);
    MD5_Update(&context, data.data(), data.size());
    TDigest result;
    MD5_Final(result.bytes, &context);
    return result;
}
#endif

template<typename TResult>
void registerData(const std::string& work, const char* contestant,
                  TResult (*function)(const TBytes&), TResult (*reference)(const TBytes&))
{
    for (const TSize& size : SIZES) {
        const TBytes data = randomBytes(size.bytes);
        if (!(function(data) == reference(data))) {
            std::cerr << contestant << " has a different result for " << size.name << '\n';
            std::exit(1);
        }
        benchmark::RegisterBenchmark((work + '/' + size.name + '/' + contestant).c_str(),
                                     [data, function](benchmark::State& state) {
                                         for (auto _ : state) {
                                             benchmark::DoNotOptimize(function(data));
                                         }
                                         state.SetBytesProcessed(
                                             static_cast<std::int64_t>(data.size()) *
                                             state.iterations());
                                     });
    }
}

/// Records the texts of a tree in the order in which they are added.
class TextList : public qor::Checksum
{
public:
    void add(const std::string& data) override { m_Texts.push_back(data); }
    void addRaw(const unsigned char*, unsigned int) override {}
    void finalize() override {}
    unsigned int getChecksumLength() override { return 0; }
    void getChecksumRaw(unsigned char*) override {}
    void reset() override {}

    std::vector<std::string> m_Texts;
};

template<typename TChecksum>
void registerTree(const std::string& work, const qor::XMLElement& tree)
{
    TextList list;
    tree.calculateChecksum(list);
    std::string bytes;
    for (const std::string& text : list.m_Texts) {
        bytes += text;
    }
    const auto add = [&work](const char* contestant, auto feed) {
        benchmark::RegisterBenchmark((work + "/flat/" + contestant).c_str(),
                                     [feed](benchmark::State& state) {
                                         TChecksum checksum;
                                         for (auto _ : state) {
                                             feed(checksum);
                                         }
                                     });
    };
    add("qortk", [&tree](qor::Checksum& checksum) { tree.calculateChecksum(checksum); });
    add("the texts in a list", [texts = list.m_Texts](qor::Checksum& checksum) {
        for (const std::string& text : texts) {
            checksum.add(text);
        }
    });
    add("all in one piece", [bytes](qor::Checksum& checksum) { checksum.add(bytes); });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    registerData("CRC-32", "qortk", crcByQortk, crcByQortk);
#ifdef HAVE_ZLIB
    registerData("CRC-32", "zlib", crcByZlib, crcByQortk);
#endif
#ifdef HAVE_ISAL
    registerData("CRC-32", "ISA-L", crcByIsal, crcByQortk);
#endif
#ifdef HAVE_LIBDEFLATE
    registerData("CRC-32", "libdeflate", crcByLibdeflate, crcByQortk);
#endif
    registerData("MD5", "qortk", digestByQortk, digestByQortk);
#ifdef HAVE_OPENSSL
    registerData("MD5", "OpenSSL", digestByOpenssl, digestByQortk);
#endif
    qor::XMLElement tree("");
    tree.parse(documents::flatRecords(1u << 20));
    registerTree<qor::CRC32>("tree CRC-32", tree);
    registerTree<qor::MD5>("tree MD5", tree);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
