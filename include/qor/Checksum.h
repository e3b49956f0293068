#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

/// An accumulator of data: fed in pieces, then read as bytes, as hexadecimal text or as a number.
///
/// The calls come in this order: add() or addRaw() any number of times, finalize() once, then the
/// reading operations, which may be repeated. reset() begins anew. Nothing refuses another order:
/// reading does not finalize, and shows the state of that moment.
///
/// A kind of checksum is made by deriving from this class. How the data are cut into pieces must
/// make no difference to it.
///
/// Nothing here fails or reports. One thread at a time uses an object; different objects have
/// nothing in common that changes.
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
    /// Length in bytes of the longest raw form of any kind.
    static const unsigned int MAX_CHECKSUM_LENGTH = 16;

    virtual ~Checksum();

    /// Takes in the bytes of a text, zero bytes included.
    virtual void add(const std::string& data);

    /// Takes in the bytes in front of the terminating zero.
    /// @param text not null
    virtual void add(const char* text);

    /// Takes in `length` bytes. Both forms of add() come here.
    /// @param data   may be null only if `length` is 0
    /// @param length number of bytes
    virtual void addRaw(const unsigned char* data, unsigned int length) = 0;

    /// Ends the data, for kinds that have something to put behind them.
    virtual void finalize() = 0;

    /// @return the length of the raw form in bytes, at most MAX_CHECKSUM_LENGTH
    virtual unsigned int getChecksumLength() = 0;

    /// Stores the raw form.
    /// @param out getChecksumLength() bytes; MAX_CHECKSUM_LENGTH always suffice
    virtual void getChecksumRaw(unsigned char* out) = 0;

    /// @return two lower-case hexadecimal digits for each byte of the raw form, in its order
    virtual std::string getChecksumHex();

    /// @return the last four bytes of the raw form, the very last in bits 7 to 0; of a shorter form
    ///         all of it
    virtual unsigned int getChecksumInteger();

    /// Forgets all data.
    virtual void reset() = 0;
};

} // namespace qor
