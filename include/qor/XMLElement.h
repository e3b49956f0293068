// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "qor/Export.h"
#include "qor/XMLChildren.h"

namespace qor
{

class Checksum;

/// An element of an XML document. The root element represents the document.
///
/// An element has a name, a text value and an ordered list of children, which it owns. There are no
/// attributes, no namespaces and no links to parents. Names may repeat and may contain any bytes;
/// no encoding is interpreted. An element whose name begins with `!` is a comment.
///
/// **Paths** are names separated by `/`, relative to the element whose operation is called.
/// One leading `/` is ignored. An empty path is the element itself. If several children have the
/// same name, a path follows the first one. An empty name, as after a trailing slash, matches the
/// first child.
///
/// **Format**: documents consist of elements, comments and the entities `amp`, `lt`, `gt`, `quot`
/// and `apos`. The whole text of a tag is the name of its element. The name thus includes
/// attributes and the slash of an empty element, which have no meaning here. A declaration `<?xml
/// ... ?>` before the root is skipped and never written; so is the text between it and the next
/// tag. The text before, between and after child
/// elements is one value.
///
/// **Round trip**: a tree that is written and read again is the same, unless it contains one of the
/// following:
/// - an element below the root whose name is empty, contains `>` or begins with `/`
/// - a root whose name is empty, contains `>`, or begins with `!` or with `?xml`
/// - a comment that has children or a value, or whose name has fewer than five bytes or does not
///   end with `--`
/// - a value that begins or ends with white space. Only reading creates such a value: in `<a>x &</a>`
///   and `<a>& x</a>`, the ampersand is not part of an entity and is dropped, but the blank remains.
/// - zero bytes, if it is read from a file: load() stops at the first one. parse() and toString()
///   keep zero bytes.
/// - carriage returns before line feeds, if it is read from a file on Windows: load() drops them.
///
/// **Ownership**: an element owns its children. It must outlive all pointers to its descendants.
///
/// **Error handling**: load(), parse() and save() return a negative number on failure, validate()
/// returns false, and getLastError() describes the failure. Invalid input never causes an
/// exception. Only `std::bad_alloc` is ever thrown. All trees are valid then, and unchanged except
/// by load(), parse() and findChild() with `create`.
///
/// **Thread safety**: one thread at a time may use a tree. Several threads may read one tree while
/// no thread changes it. All elements of the process share the text of the last error, so another
/// thread may replace it at any time.
///
/// **Complexity**: every operation takes time proportional to the elements and bytes that it
/// visits, unless noted otherwise. No operation recurses, so the depth of a tree is limited by
/// memory only.
///
/// @code
/// qor::XMLElement document("");
/// if (document.load("settings.xml") < 0) {
///     std::cerr << qor::XMLElement::getLastError() << '\n';
///     return;
/// }
/// const int width = document.getValueAsInteger("window/width", 800);
/// document.findChild("window/width", true)->setValue(width + 100);
/// if (document.save("settings.xml", true) < 0) {
///     std::cerr << qor::XMLElement::getLastError() << '\n';
/// }
/// @endcode
class QORTK_API XMLElement
{
public:
    /// Constructs a root element with an empty value and no children.
    /// @param name any bytes
    /// @throws std::bad_alloc if there is not enough memory
    explicit XMLElement(const std::string& name);

    /// Constructs a root element as a copy of an element and its descendants.
    /// @param other the element to copy; null constructs an element with an empty name
    /// @throws std::bad_alloc if there is not enough memory
    explicit XMLElement(const XMLElement* other);

    /// Constructs a root element as a copy of an element and its descendants.
    /// @param other the element to copy
    /// @throws std::bad_alloc if there is not enough memory
    XMLElement(const XMLElement& other);

    /// Constructs a root element from the name, value and children of another element. Takes
    /// constant time. Pointers to the children stay valid.
    /// @param other the source, which is left without name, value and children
    XMLElement(XMLElement&& other) noexcept;

    /// Destroys the element and its descendants.
    virtual ~XMLElement();

    /// Replaces name, value and children by copies. The element keeps its place among its siblings.
    /// Self-assignment has no effect.
    /// @param other the element to copy; may be an ancestor or a descendant of this element
    /// @return this element
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    XMLElement& operator=(const XMLElement& other);

    /// Replaces name, value and children by those of another element. Self-assignment has no
    /// effect. If both elements are roots, only the deletion of the former children takes time.
    /// @param other the source, which is left without name, value and children. It may be a
    ///        descendant of this element. If it is an ancestor, it is copied and not changed.
    /// @return this element
    /// @throws std::bad_alloc if the element is a child and there is not enough memory; nothing is
    ///         changed then
    XMLElement& operator=(XMLElement&& other);

    /// @name Documents
    /// @{

    /// Replaces this element, its name included, by the document in a file. The document ends at
    /// the first zero byte of the file. A pipe is read to its end; a pipe without a writer is
    /// empty.
    /// @param filename the path of the file. A path with a zero byte does not name a file.
    /// @return a result of parse(); -1 if the file cannot be opened or read, or is empty
    /// @throws std::bad_alloc if there is not enough memory; the element then has an unspecified
    ///         part of the document
    [[nodiscard]] int load(const std::string& filename);

    /// Replaces this element, its name included, by the document in a text.
    ///
    /// The end of a truncated text closes all open elements. This is a failure only if the text
    /// ends within or directly after the start tag of an element below the root, or within an end
    /// tag whose name is incomplete. A comment without an end is no failure: it extends to the end
    /// of the text, including end tags there, and saving does not keep it. validate() can detect
    /// truncated documents, except for the loss of end tags and comments.
    ///
    /// The position of an error is the number of bytes read, including the faulty byte or tag, so
    /// the index of the last of them is one less. If no tag follows a declaration, it is the index
    /// of the `?>`.
    /// @param source the document. Text after the root element is ignored. A byte-order mark at the
    ///        beginning is an error.
    /// @return the position after the end tag of the root, or the length of the text if there is no
    ///         such tag. On failure, the negated position of the error; the element then has the
    ///         elements before that position. -1 if the first byte is wrong, or if the error has
    ///         no position, for example for an empty text or a text of 2 GiB or more.
    /// @throws std::bad_alloc if there is not enough memory; the element then has an unspecified
    ///         part of the document
    int parse(const std::string& source);

    /// Writes this element and its descendants to a file.
    ///
    /// A regular file is replaced as a whole: after a failure, a crash or a power cut it has either
    /// its old content or the new one. For that, the text is written to a temporary file in the
    /// same directory, which is flushed to the disk and renamed. The flush may take milliseconds,
    /// or longer on a busy disk. Permissions and owner are kept, and a symbolic link is followed.
    /// File descriptors and watchers of the old file do not see the new content. A file that is not
    /// writable, such as one with mode 0444, is not replaced, although its directory would permit
    /// it.
    ///
    /// The temporary file is removed on failure. After a crash or a power cut it may remain, with a
    /// part of the text or all of it, and later calls do not remove it. Its name is
    /// `.qortk-PROCESS-NUMBER-NUMBER` on POSIX systems and `TARGET.PROCESS-NUMBER.tmp` on Windows.
    /// It may be deleted while no program saves in the directory.
    ///
    /// On POSIX systems, everyone may read and write a new file as far as the file mode creation
    /// mask permits (0666 less the mask). On Windows, a new file inherits the permissions of its
    /// directory.
    ///
    /// The file is written in place where it cannot be replaced as a whole: if it is not a regular
    /// file, has several hard links or attributes that cannot be copied, or if its directory is not
    /// writable. It is emptied first then, so a failed write or a crash loses the old content.
    ///
    /// The whole text is built in memory first. Formatted lines begin with a tab for each level, so
    /// the size grows with the square of the depth: the formatted text of 20,000 nested elements,
    /// which are read from 60 kB, takes 400 MB.
    /// @param filename the path of the file. A path with a zero byte does not name a file.
    /// @param formatted true writes one element per line, indented by tabs; false adds nothing
    ///        between the tags
    /// @return the size of the text in bytes, at most the maximum `int`; -1 if the file cannot be
    ///         opened for writing, for example a pipe without a reader. A failed write, as on a
    ///         full disk, is not reported. Compare the content of the file with toString().
    /// @throws std::bad_alloc if there is not enough memory; the file is unchanged then
    [[nodiscard]] int save(const std::string& filename, bool formatted) const;

    /// Returns the text of this element and its descendants.
    /// @return the text, with nothing added between the tags
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::string toString() const;

    /// Returns the text that save() writes.
    /// @param formatted true writes one element per line, indented by tabs; false adds nothing
    ///        between the tags. See save() for the size of formatted text.
    /// @return the text
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::string toString(bool formatted) const;

    /// @}

    /// @name Name and value
    /// @{

    /// Returns the name.
    /// @return a copy
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::string getName() const;

    /// Replaces the name.
    /// @param name any bytes. See the class description for names that cannot be read again.
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    void setName(const std::string& name);

    /// Returns the value.
    /// @return a copy
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::string getValue() const;

    /// Returns the value as a number. Like a standard stream in the classic locale, it skips
    /// leading white space and ignores text after the number.
    /// @return the number; 0 if the value does not begin with a number that fits the type
    [[nodiscard]] int getValueAsInteger() const;

    /// @copydoc getValueAsInteger() const
    [[nodiscard]] float getValueAsFloat() const;

    /// Returns the value as a boolean.
    /// @return true if the value begins with the word "true", after optional white space
    [[nodiscard]] bool getValueAsBoolean() const;

    /// Returns the value of the element at a path.
    /// @param path the path, see the class description
    /// @param defaultValue the result if the element does not exist
    /// @return a copy
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] std::string getValue(const std::string& path,
                                       const std::string& defaultValue) const;

    /// Returns the value of the element at a path as a number.
    /// @param path the path, see the class description
    /// @param defaultValue the result if the element does not exist
    /// @return the number, as from getValueAsInteger(). An element whose value is not a number
    ///         gives 0, not `defaultValue`.
    [[nodiscard]] int getValueAsInteger(const std::string& path, int defaultValue) const;

    /// Returns the value of the element at a path as a number.
    /// @param path the path, see the class description
    /// @param defaultValue the result if the element does not exist
    /// @return the number, as from getValueAsFloat(). An element whose value is not a number
    ///         gives 0, not `defaultValue`.
    [[nodiscard]] float getValueAsFloat(const std::string& path, float defaultValue) const;

    /// Returns the value of the element at a path as a boolean.
    /// @param path the path, see the class description
    /// @param defaultValue the result if the element does not exist
    /// @return true if the value begins with the word "true", after optional white space
    [[nodiscard]] bool getValueAsBoolean(const std::string& path, bool defaultValue) const;

    /// Replaces the value by a text without the blanks, tabs, line feeds and carriage returns at
    /// its ends.
    /// @param text the text
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    void setValue(const std::string& text);

    /// Replaces the value by a text without the blanks, tabs, line feeds and carriage returns at
    /// its ends.
    /// @param text the text, ended by a zero byte; null stores an empty value
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    void setValue(const char* text);

    /// Replaces the value by the decimal text of an integer.
    /// @param number the integer. `NULL` is one, too, and is stored as 0: use `nullptr` or clear
    ///        texts for an empty value.
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    void setValue(int number);

    /// @copydoc setValue(int)
    void setValue(unsigned int number);

    /// @copydoc setValue(int)
    void setValue(long number);

    /// @copydoc setValue(int)
    void setValue(unsigned long number);

    /// @copydoc setValue(int)
    void setValue(long long number);

    /// @copydoc setValue(int)
    void setValue(unsigned long long number);

    /// Replaces the value by the text of a number in fixed notation with six digits after the
    /// point.
    /// @param number the number, not converted to another floating-point type
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    void setValue(float number);

    /// @copydoc setValue(float)
    void setValue(double number);

    /// Replaces the value by "true" or "false".
    /// @param flag the boolean
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    void setValue(bool flag);

    /// Not available, because a character would be stored as a number.
    /// @param character not stored
    void setValue(char character) = delete;

    /// Not available, because a pointer that is not a text would be stored as "true".
    /// @param pointer not stored
    template<typename T, typename = std::enable_if_t<!std::is_same_v<std::remove_const_t<T>, char>>>
    void setValue(T* pointer) = delete;

    /// Not available, because a pointer to a member would be stored as "true".
    /// @param pointer not stored
    template<typename T, typename TClass>
    void setValue(T TClass::*pointer) = delete;

    /// Not available, because a lambda expression would be stored as "true".
    /// @param function not stored
    template<typename T, typename TPointer = decltype(+std::declval<const T&>()),
             typename = std::enable_if_t<std::is_class_v<T> &&
                                         std::is_function_v<std::remove_pointer_t<TPointer>>>>
    void setValue(const T& function) = delete;

    /// @}
    /// @name Children
    /// Returned pointers refer to elements of the tree. They are valid until the element or one of
    /// its ancestors is deleted, cleared, assigned to or destroyed.
    /// @{

    /// Appends a new child with an empty value in constant time.
    /// @param name any bytes
    /// @return the child
    /// @throws std::bad_alloc if there is not enough memory; nothing is changed then
    XMLElement* createChild(const std::string& name);

    /// Deletes a child. Takes time proportional to its position.
    /// @param child a child of this element; otherwise nothing is deleted
    /// @return the next sibling of the deleted child; null if it was the last one, or if nothing
    ///         was deleted
    XMLElement* deleteChild(XMLElement* child) noexcept;

    /// Deletes all children with a name.
    /// @param name the name. An empty name deletes only the children whose name is empty, although
    ///        it matches every child in getChild().
    void deleteChild(const std::string& name) noexcept;

    /// Deletes all children. Name and value are kept.
    void deleteChildren() noexcept;

    /// Deletes all children and empties name and value.
    void clear() noexcept;

    /// Returns the first child with a name.
    /// @param name the name; an empty name matches every child
    /// @return the child; null if it does not exist
    [[nodiscard]] XMLElement* getChild(const std::string& name) noexcept;

    /// @copydoc getChild(const std::string&)
    [[nodiscard]] const XMLElement* getChild(const std::string& name) const noexcept;

    /// Returns the first sibling after a child that has a name.
    /// @param child a child of this element, or null
    /// @param name the name; an empty name matches every sibling
    /// @return the sibling; null if it does not exist or `child` is null
    [[nodiscard]] XMLElement* getNextChild(XMLElement* child, const std::string& name) noexcept;

    /// @copydoc getNextChild(XMLElement*, const std::string&)
    [[nodiscard]] const XMLElement* getNextChild(const XMLElement* child,
                                                 const std::string& name) const noexcept;

    /// Returns a view of the children for a range-based `for` loop.
    /// @param name name of the children to visit; an empty one visits all
    /// @return the view, which is valid as long as this element
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] XMLChildren<XMLElement> getChildren(const std::string& name = std::string())
    {
        return {*this, name};
    }

    /// @copydoc getChildren(const std::string&)
    [[nodiscard]] XMLChildren<const XMLElement>
    getChildren(const std::string& name = std::string()) const
    {
        return {*this, name};
    }

    /// Returns the element at a path.
    /// @param path the path, see the class description
    /// @param create true appends each missing element to the children of its parent
    /// @return the element; null if it does not exist and is not created
    /// @throws std::bad_alloc if it creates elements. Some of them may exist afterwards.
    XMLElement* findChild(const std::string& path, bool create = false);

    /// Returns the element at a path.
    /// @param path the path, see the class description
    /// @return the element; null if it does not exist
    [[nodiscard]] const XMLElement* findChild(const std::string& path) const;

    /// @}
    /// @name Whole trees
    /// @{

    /// Checks this element and its descendants against a template.
    ///
    /// A template is a tree of the same shape. Each of its elements describes the elements of the
    /// document that have its name and its place, by a rule in its value. A rule such as `0-5:1-20`
    /// has two parts, separated by the first colon: the number of such elements that a parent may
    /// have, and the size in bytes of the value of each. A part is a single number or a range with
    /// inclusive limits.
    ///
    /// A number begins after optional white space and ends before the first byte that is not a
    /// digit. Without digits it is 0, and its maximum is 4294967295. Signs and open ranges are not
    /// supported: the upper limit of `1-` is 0. The names of the two roots, and the count in the
    /// rule of the template's root, are ignored.
    ///
    /// Comments in the document are skipped. A template cannot have comments, because their values
    /// are not rules. If a template element has several children with one name, each of their
    /// rules applies to all elements of that name.
    ///
    /// validate() stops at the first error. For each element it checks the size of the value, then
    /// the names of all children, and then, rule by rule, the number of children and each child
    /// with its descendants. Rules that are not reached are not checked.
    ///
    /// A mandatory element at the end of the document detects most truncated files.
    ///
    /// @note Takes time proportional to the elements and bytes of both trees, times at most the
    ///       logarithm of the number of children of an element. If names repeat in a template, the
    ///       time is exponential in its depth, because every repetition checks the same elements
    ///       again. Do not use such templates from untrusted sources.
    /// @param templateRoot template of this element; null is an error
    /// @return true if the document is valid; false sets getLastError()
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] bool validate(const XMLElement* templateRoot) const;

    /// Adds the names and values of this element and its descendants to a checksum, in document
    /// order and without separators. Comments are included.
    /// @param checksum the checksum, which is neither reset nor finalized
    /// @throws std::bad_alloc if there is not enough memory
    void calculateChecksum(Checksum& checksum) const;

    /// @}

    /// Returns the description of the last failure of load(), parse(), save() or validate() on any
    /// element in the process. A success does not change it.
    /// @return a copy; empty before the first failure
    /// @throws std::bad_alloc if there is not enough memory
    [[nodiscard]] static std::string getLastError();

private:
    friend class ElementFinder;
    class Parser;
    class Validator;
    class Writer;

    /// @cond
    struct TTextBlock;

    /// A text of any bytes. Up to CAPACITY bytes are in the object itself, longer texts in a block
    /// on the heap: an element with a short value takes one allocation.
    template<std::size_t CAPACITY>
    class QORTK_HIDDEN Text
    {
    public:
        Text() noexcept = default;
        explicit Text(std::string_view text);
        Text(const Text&) = delete;
        ~Text() { freeBlock(); }

        Text& operator=(const Text&) = delete;
        Text& operator=(Text&& other) noexcept;

        /// Returns the text. It is valid until the text changes.
        operator std::string_view() const noexcept;

        [[nodiscard]] std::size_t size() const noexcept;
        [[nodiscard]] bool empty() const noexcept;

        /// Replaces the text.
        /// @param text may be a part of this text
        void assign(std::string_view text);

        /// Appends to the text, in amortized constant time per byte.
        /// @param text must not be a part of this text
        void append(std::string_view text);

        void clear() noexcept;

    private:
        static constexpr unsigned char IN_BLOCK = 255; ///< m_Size of a text on the heap

        [[nodiscard]] bool hasBlock() const noexcept { return m_Size == IN_BLOCK; }
        [[nodiscard]] TTextBlock* block() const noexcept;
        void freeBlock() noexcept;
        [[nodiscard]] std::size_t capacity() const noexcept;
        [[nodiscard]] char* bytes() noexcept;
        void setSize(std::size_t size) noexcept;
        void moveToBlock(std::size_t capacity, std::size_t size);

        char m_Bytes[CAPACITY]; ///< the text, or the address of its block
        unsigned char m_Size = 0;
    };
    /// @endcond

    // With these capacities, an element has 88 bytes on 64-bit systems, as many as glibc allocates
    // in a chunk of 96 bytes. Most names and values fit.
    static constexpr std::size_t NAME_CAPACITY = 15;
    static constexpr std::size_t VALUE_CAPACITY = 38;

    XMLElement(std::string_view name, std::string_view value);

    XMLElement* addChild(XMLElement* child) noexcept;
    XMLElement* removeAfter(XMLElement* previous) noexcept;
    static XMLElement* findFrom(XMLElement* sibling, std::string_view name) noexcept;
    void copyChildren(const XMLElement& other);
    bool hasDescendant(const XMLElement& element) const;
    void moveContentFrom(XMLElement& other) noexcept;
    static void destroy(XMLElement* first) noexcept;
    static int fail(int result, const std::string& message);
    static bool reject(const std::string& message);
    static bool rejectRule(const XMLElement& templateElement);
    bool validate(const XMLElement* templateElement, unsigned int minLength,
                  unsigned int maxLength) const;
    bool parseTemplateRule(std::string_view rule, unsigned int& minCount, unsigned int& maxCount,
                           unsigned int& minLength, unsigned int& maxLength) const;

    static std::string* m_LastError; ///< null before the first failure

    XMLElement* m_NextSibling = nullptr;
    XMLElement* m_FirstChild = nullptr;
    XMLElement* m_LastChild = nullptr;
    Text<NAME_CAPACITY> m_Name;
    Text<VALUE_CAPACITY> m_Value;
    bool m_IsChild = false; ///< false proves that the element has no ancestors
};

} // namespace qor
