// SPDX-License-Identifier: MIT
#include <memory>
#include <random>

#include "TestData.h"
#include "checksum/CRCFolding.h"
#include "checksum/CRCTables.h"
#include "qor/qor.h"

using qor::Checksum;
using qor::CRC32;
using qor::MD5;

namespace
{

unsigned int hexNumber(const std::string& digits)
{
    return static_cast<unsigned int>(std::stoul(digits, nullptr, 16));
}

std::string finished(Checksum& checksum)
{
    checksum.finalize();
    return checksum.getChecksumHex();
}

void addPieces(Checksum& checksum, const std::string& data, std::mt19937& random)
{
    for (std::size_t begin = 0; begin < data.size();) {
        const std::string piece = data.substr(begin, random() % 5 == 0 ? 0 : random() % 300);
        checksum.addRaw(reinterpret_cast<const unsigned char*>(piece.data()),
                        static_cast<unsigned int>(piece.size()));
        begin += piece.size();
    }
}

/// Records the hashed bytes, and returns the last ones as the checksum.
class Recorder : public Checksum
{
public:
    explicit Recorder(unsigned int length = 0) : m_Length(length) {}
    using Checksum::add;
    void add(const std::string& data) override
    {
        m_Pieces += '[';
        Checksum::add(data);
        m_Pieces += ']';
    }
    void addRaw(const unsigned char* data, unsigned int length) override
    {
        m_Pieces.append(data, data + length);
    }
    void finalize() override {}
    unsigned int getChecksumLength() override { return m_Length; }
    void getChecksumRaw(unsigned char* out) override
    {
        const std::string bytes = m_Pieces.substr(m_Pieces.size() - m_Length);
        std::copy(bytes.begin(), bytes.end(), out);
    }
    void reset() override {}

    unsigned int m_Length;
    std::string m_Pieces;
};

} // namespace

TEST(ChecksumTest, MatchesKnownChecksums)
{
    std::mt19937 random(6);
    MD5 digest;
    for (const auto& test : readTable("checksums")) {
        const std::size_t size = std::stoul(test[1]);
        const std::string data = repeated(test[0], static_cast<int>(size)).substr(0, size);
        CRC32 fromZero = {}, fromOnes(0xFFFFFFFF), inPieces;
        fromZero.add(data);
        fromOnes.add(data.c_str());
        addPieces(inPieces, data, random);
        EXPECT_EQ(fromZero.getChecksumInteger(), hexNumber(test[2])) << size;
        EXPECT_EQ(fromOnes.getChecksumInteger(), hexNumber(test[3])) << size;
        EXPECT_EQ(inPieces.getChecksumInteger(), hexNumber(test[2])) << size;
        digest.add(data);
        EXPECT_EQ(finished(digest), test[4]) << size;
        digest.reset();
        addPieces(digest, data, random);
        EXPECT_EQ(finished(digest), test[4]) << size;
        digest.reset();
        addPieces(digest, data.substr(0, size / 2), random);
        MD5 copy(digest);
        copy.add(data.substr(size / 2));
        digest.add("something else");
        digest.reset();
        EXPECT_EQ(finished(copy), test[4]) << size;
    }
}

TEST(ChecksumTest, EveryCRC32ImplementationMatchesBitwiseDivision)
{
    constexpr std::size_t MAX_OFFSET = 63, MAX_SIZE = 700;
    std::mt19937 random(3);
    std::vector<unsigned char> data(MAX_OFFSET + MAX_SIZE);
    for (unsigned char& byte : data) {
        byte = static_cast<unsigned char>(random());
    }
    for (std::size_t offset = 0; offset <= MAX_OFFSET; ++offset) {
        const unsigned char* const begin = &data[offset];
        const auto before = static_cast<std::uint32_t>(random());
        std::vector<std::uint32_t> expected = {before};
        for (std::size_t size = 0; size <= MAX_SIZE; ++size) {
            ASSERT_EQ(qor::addBytesByTables(before, begin, size), expected[size])
                << size << " bytes at " << offset;
            for (const qor::TCRCFolding* folding : qor::getCRCFoldings()) {
                if (size >= folding->minSize && folding->isSupported()) {
                    ASSERT_EQ(folding->fold(before, begin, size),
                              expected[size - size % qor::TCRCFolding::UNIT])
                        << folding->vectorBits << " bits, " << size << " bytes at " << offset;
                }
            }
            std::uint32_t value = expected.back() ^ (size < MAX_SIZE ? begin[size] : 0u);
            for (int bit = 0; bit < 8; ++bit) {
                value = qor::multiplyByX(value);
            }
            expected.push_back(value);
        }
    }
}

TEST(ChecksumTest, CRC32ReturnsRegisterWithoutFinalization)
{
    CRC32 checksum(5);
    EXPECT_EQ(finished(checksum), "05000000");
    CRC32 copy(checksum), assigned;
    checksum.add(std::string("a\0b", 3));
    copy.add("a\0c");
    copy.finalize();
    copy.addRaw(nullptr, 0);
    EXPECT_NE(copy.getChecksumInteger(), checksum.getChecksumInteger());
    copy.add(std::string("\0b", 2));
    EXPECT_EQ(copy.getChecksumInteger(), checksum.getChecksumInteger());
    assigned = checksum;
    for (CRC32* each : {&copy, &assigned}) {
        each->reset();
        EXPECT_EQ(each->getChecksumInteger(), 5u);
    }
}

TEST(ChecksumTest, MD5ReturnsStateBeforeFinalization)
{
    MD5 digest;
    EXPECT_EQ(digest.getChecksumHex(), "0123456789abcdeffedcba9876543210");
    EXPECT_EQ(digest.getChecksumInteger(), 0x76543210u);
    digest.addRaw(nullptr, 0);
    const std::string block = repeated("x", 64);
    digest.add(block.c_str());
    const std::string afterBlock = digest.getChecksumHex();
    digest.add("y");
    EXPECT_EQ(digest.getChecksumHex(), afterBlock);
    // The padding is hashed like data.
    MD5 padded;
    padded.add(block + "y" + '\x80' + std::string(54, '\0') + '\x08' + '\x02' +
               std::string(6, '\0'));
    digest.finalize();
    EXPECT_EQ(digest.getChecksumHex(), padded.getChecksumHex());
    EXPECT_NE(finished(digest), padded.getChecksumHex());
}

TEST(ChecksumTest, MD5CountsMoreThan32BitsOfLength)
{
    constexpr const char* DIGEST = "ea3b62c6b93cb3625a1fd76777985f5a";
    constexpr unsigned int HALF_GIB = 1u << 29;
    const std::unique_ptr<unsigned char[]> zeros(new unsigned char[HALF_GIB + 1]());
    MD5 atOnce, carried;
    atOnce.addRaw(zeros.get(), HALF_GIB + 1);
    EXPECT_EQ(finished(atOnce), DIGEST);
    carried.addRaw(zeros.get(), HALF_GIB - 1);
    carried.addRaw(zeros.get(), 2);
    EXPECT_EQ(finished(carried), DIGEST);
}

TEST(ChecksumTest, ReadsUserDefinedChecksums)
{
    for (const auto& test : readTable("checksum-readings")) {
        Recorder recorder(hexNumber(test[0]));
        recorder.Checksum::add(std::string("abcdefghijk\xEE\0\x7F\xFF\n", 16));
        EXPECT_EQ(recorder.getChecksumHex(), test[1]);
        EXPECT_EQ(recorder.getChecksumInteger(), hexNumber(test[2]));
    }
}

TEST(ChecksumTest, HashesTreesInDocumentOrder)
{
    qor::XMLElement tree("");
    tree.parse("<r>0<a><b>2<!--c--></b><c><d>5</d></c>1</a><e><f></f></e></r>");
    Recorder recorder;
    recorder.add(std::string("before"));
    tree.calculateChecksum(recorder);
    EXPECT_EQ(recorder.m_Pieces, "[before][r][0][a][1][b][2][!--c--][][c][][d][5][e][][f][]");
    recorder.m_Pieces.clear();
    tree.findChild("a/b")->calculateChecksum(recorder);
    EXPECT_EQ(recorder.m_Pieces, "[b][2][!--c--][]");

    CRC32 expected, actual;
    expected.add("r0a1b2!--c--cd5ef");
    tree.calculateChecksum(actual);
    EXPECT_EQ(actual.getChecksumInteger(), expected.getChecksumInteger());
    struct TCounter : CRC32 {
        void add(const std::string& data) override { texts += data.empty() ? 0 : 1; }
        int texts = 0;
    } counter;
    tree.calculateChecksum(counter);
    EXPECT_EQ(counter.texts, 12);
}
