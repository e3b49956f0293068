// Checksums of data, of a document, and of a kind of one's own.
#include <iostream>
#include <string>

#include <qor/CRC32.h>
#include <qor/Checksum.h>
#include <qor/MD5.h>
#include <qor/XMLElement.h>

/// The sum of all bytes: four bytes, the most significant first.
class ByteSum : public qor::Checksum
{
public:
    void addRaw(const unsigned char* data, unsigned int length) override
    {
        for (unsigned int i = 0; i < length; ++i) {
            m_Sum += data[i];
        }
    }
    void finalize() override {}
    unsigned int getChecksumLength() override { return 4; }
    void getChecksumRaw(unsigned char* out) override
    {
        for (int i = 0; i < 4; ++i) {
            out[i] = static_cast<unsigned char>(m_Sum >> (24 - 8 * i));
        }
    }
    void reset() override { m_Sum = 0; }

private:
    unsigned int m_Sum = 0;
};

/// Works with any kind.
static std::string fingerprint(const qor::XMLElement& document, qor::Checksum& checksum)
{
    checksum.reset();
    document.calculateChecksum(checksum);
    checksum.finalize();
    return checksum.getChecksumHex();
}

int main()
{
    // The value that zip archives and PNG images have is inverted at both ends.
    qor::CRC32 crc(0xFFFFFFFF);
    crc.add("1234");
    crc.add("56789"); // how data are cut makes no difference
    std::cout << std::hex << ~crc.getChecksumInteger() << '\n';

    qor::XMLElement document("");
    document.parse("<ship><name>Aurora</name></ship>");
    qor::MD5 digest;
    ByteSum sum;
    const std::string before = fingerprint(document, digest);
    std::cout << before << '\n' << fingerprint(document, sum) << '\n';

    // Layout is nothing that counts; a changed value is.
    document.parse("<ship>\n\t<name>Aurora</name>\n</ship>");
    std::cout << (fingerprint(document, digest) == before ? "same" : "changed") << '\n';
    document.findChild("name")->setValue("Aurore");
    std::cout << (fingerprint(document, digest) == before ? "same" : "changed") << '\n';
}
