// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "qor/Export.h"

namespace qor
{

/// Base class of checksums. Data is added in pieces. The result is read as raw bytes, as
/// hexadecimal text or as a number.
///
/// Call add() or addRaw() any number of times, then finalize() once, then the reading operations
/// any number of times. reset() starts a new checksum. The order of calls is not checked: a reading
/// operation before finalize() returns an intermediate result.
///
/// To implement another checksum algorithm, derive a class from this one. The result must depend on
/// the data only, not on its division into pieces.
///
/// **Ownership**: a checksum stores no pointers to the data that is added.
///
/// **Error handling**: no operation fails, except that getChecksumHex() throws `std::bad_alloc` if
/// there is not enough memory.
///
/// **Thread safety**: one thread at a time may use an object. Different objects are independent.
///
/// **Complexity**: adding data takes time proportional to its length and allocates nothing.
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
    /// Maximum length in bytes of the raw form of every algorithm.
    static const unsigned int MAX_CHECKSUM_LENGTH = 16;

    /// Virtual, so a `std::unique_ptr<Checksum>` may own an object of a derived class.
    virtual ~Checksum();

    /// Adds the bytes of a text, including zero bytes.
    /// @param data text of any length; addRaw() receives it in pieces if it exceeds 4 GiB
    virtual void add(const std::string& data);

    /// Adds the bytes of a zero-terminated text, without the zero.
    /// @param text not null
    virtual void add(const char* text);

    /// Adds bytes. Both forms of add() call this operation.
    /// @param data the bytes; may be null only if `length` is 0
    /// @param length number of bytes
    virtual void addRaw(const unsigned char* data, unsigned int length) = 0;

    /// Completes the checksum after the last data. Algorithms with padding append it here.
    virtual void finalize() = 0;

    /// Returns the length of the raw form.
    /// @return bytes, at most MAX_CHECKSUM_LENGTH
    virtual unsigned int getChecksumLength() = 0;

    /// Stores the raw form.
    /// @param[out] out getChecksumLength() bytes; MAX_CHECKSUM_LENGTH bytes are always enough
    virtual void getChecksumRaw(unsigned char* out) = 0;

    /// Returns the raw form as hexadecimal text.
    /// @return two lower-case digits for each byte, in the order of the bytes
    /// @throws std::bad_alloc if there is not enough memory
    virtual std::string getChecksumHex();

    /// Returns the end of the raw form as a number.
    /// @return the last four bytes, or all bytes of a shorter form, with the last byte in bits 7
    ///         to 0
    virtual unsigned int getChecksumInteger();

    /// Discards all data and starts a new checksum.
    virtual void reset() = 0;
};

} // namespace qor
