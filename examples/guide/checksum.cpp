// SPDX-License-Identifier: MIT
// Computes checksums of data and of a document, and implements another checksum.
#include <iostream>
#include <string>

#include <qor/CRC32.h>
#include <qor/Checksum.h>
#include <qor/MD5.h>
#include <qor/XMLElement.h>

/// Adds all bytes. The checksum is a 32-bit number in big-endian order.
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

/// Returns the checksum of a document as text.
static std::string fingerprint(const qor::XMLElement& document, qor::Checksum& checksum)
{
    checksum.reset();
    document.calculateChecksum(checksum);
    checksum.finalize();
    return checksum.getChecksumHex();
}

int main()
{
    // The CRC-32 of zip archives and PNG images starts with all bits set and is inverted at the
    // end.
    qor::CRC32 crc(0xFFFFFFFF);
    crc.add("1234");
    crc.add("56789"); // the same as add("123456789")
    std::cout << std::hex << ~crc.getChecksumInteger() << '\n';

    qor::XMLElement document("");
    document.parse("<ship><name>Aurora</name></ship>");
    qor::MD5 digest;
    ByteSum sum;
    const std::string before = fingerprint(document, digest);
    std::cout << before << '\n' << fingerprint(document, sum) << '\n';

    // The checksum depends on names and values, but not on white space between elements.
    document.parse("<ship>\n\t<name>Aurora</name>\n</ship>");
    std::cout << (fingerprint(document, digest) == before ? "same" : "changed") << '\n';
    document.findChild("name")->setValue("Aurore");
    std::cout << (fingerprint(document, digest) == before ? "same" : "changed") << '\n';
}
