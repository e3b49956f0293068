#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

/// Base class of checksums, which are fed with data in pieces and then read as bytes, as
/// hexadecimal text or as a number.
///
/// Call add() or addRaw() any number of times, then finalize() once, then the reading operations,
/// which may be repeated. reset() starts again. Another order is not rejected: reading does not
/// finalize, and returns the state of that moment.
///
/// To add a kind of checksum, derive from this class. Its result must not depend on how the data
/// are cut into pieces.
///
/// **Error handling**: no operation fails, except that getChecksumHex() throws `std::bad_alloc` if
/// there is not enough memory.
///
/// **Thread safety**: one thread at a time may use an object. Different objects are independent.
///
/// @code
/// std::string fingerprint(const qor::XMLElement& document, qor::Checksum& checksum)
/// {
///     checksum.reset();
///     document.calculateChecksum(checksum);
///     checksum.finalize();
///     return checksum.getChecksumHex();
/// }
/// @endcode
class QORTK_API Checksum
{
public:
    /// Maximum length in bytes of the raw form of any kind.
    static const unsigned int MAX_CHECKSUM_LENGTH = 16;

    virtual ~Checksum();

    /// Adds the bytes of a text, including zero bytes.
    /// @param data text of any length
    virtual void add(const std::string& data);

    /// Adds the bytes of a zero-terminated text, without the zero.
    /// @param text not null
    virtual void add(const char* text);

    /// Adds bytes. Both forms of add() call this operation.
    /// @param data the bytes; may be null only if `length` is 0
    /// @param length number of bytes
    virtual void addRaw(const unsigned char* data, unsigned int length) = 0;

    /// Ends the data. Kinds that append padding do it here.
    virtual void finalize() = 0;

    /// Returns the length of the raw form in bytes, at most MAX_CHECKSUM_LENGTH.
    virtual unsigned int getChecksumLength() = 0;

    /// Stores the raw form.
    /// @param[out] out getChecksumLength() bytes; MAX_CHECKSUM_LENGTH bytes are always enough
    virtual void getChecksumRaw(unsigned char* out) = 0;

    /// Returns the raw form as text: two lower-case hexadecimal digits for each byte, in its order.
    virtual std::string getChecksumHex();

    /// Returns the last four bytes of the raw form as a number, the last byte in bits 7 to 0. A
    /// shorter form is used completely.
    virtual unsigned int getChecksumInteger();

    /// Discards all data.
    virtual void reset() = 0;
};

} // namespace qor
