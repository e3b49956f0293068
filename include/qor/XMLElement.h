#pragma once

#include <string>
#include <string_view>

#include "qor/Export.h"

namespace qor
{

class Checksum;

/// An element of an XML document, and with all below it the document itself.
///
/// An element has a name, one text value and an ordered list of children, which it owns. There are
/// no attributes, no namespaces and no links to parents. Names may repeat and may hold any bytes;
/// no encoding is interpreted. An element whose name begins with `!` is a comment.
///
/// **Paths** are names separated by `/`, relative to the element that is asked; one leading `/` is
/// ignored. An empty path is the element itself. Of several children with one name only the first
/// is followed. An empty name, as behind a trailing slash, stands for the first child whatever its
/// name.
///
/// **Text** that is read or written: elements, comments and the five entities `amp`, `lt`, `gt`,
/// `quot`, `apos`. A tag's whole text is its element's name, so `<a b="1">` has the
/// name `a b="1"`, and `<a/>` opens an element `a/`. A declaration `<?xml ... ?>` is passed over
/// and never written. Text on both sides of child elements is one value.
///
/// **Failures** of load(), parse() and save() are told by a negative result and those of validate()
/// by false, with the reason in getLastError(). Nothing throws but `std::bad_alloc`, and only where
/// memory is taken; what was there before is then still whole or, in load() and parse(), replaced
/// by a part of the new tree. Of a path that was to be created, a part may be there.
///
/// **Depth** is bounded by memory alone: no operation recurses. Each takes time in proportion to
/// the elements and bytes that it visits.
///
/// **Threads**: one thread at a time per tree; several may read one tree while none changes it. The
/// last error is shared by all elements without a lock, so operations that may fail must not run in
/// several threads at once where one of them does fail.
///
/// @code
/// qor::XMLElement document("");
/// if (document.load("settings.xml") < 0) {
///     std::cerr << document.getLastError() << '\n';
///     return;
/// }
/// const int width = document.getValueAsInteger("window/width", 800);
/// document.findChild("window/title", true)->setValue("Hello");
/// document.save("settings.xml", true);
/// @endcode
class QORTK_API XMLElement
{
public:
    /// Makes a root with an empty value and no children.
    explicit XMLElement(const std::string& name);

    /// Copies an element with all below it; null makes a root with an empty name.
    explicit XMLElement(const XMLElement* other);

    /// Copies an element with all below it. The copy is a root.
    XMLElement(const XMLElement& other);

    /// Takes name, value and children over; `other` is left without any of them.
    XMLElement(XMLElement&& other) noexcept;

    virtual ~XMLElement();

    /// Replaces name, value and children by copies of those of `other`, which may be this element,
    /// one below it or one above it. The element keeps its place among its siblings. Without enough
    /// memory nothing changes.
    XMLElement& operator=(const XMLElement& other);

    /// Takes name, value and children over from `other`, which is left without any of them and may
    /// be an element below this one. Between roots nothing is copied or searched. An element is
    /// never made its own descendant: from this element or one above it, it is assigned a copy.
    XMLElement& operator=(XMLElement&& other);

    /// @name Name and value
    /// @{

    /// @return the name
    std::string getName() const;

    /// Stores any name, whatever its bytes.
    void setName(const std::string& name);

    /// @return the value as it is stored
    std::string getValue() const;

    /// @return the value read as a number, as a standard stream would: white space in front is
    ///         skipped and text behind it ignored; 0 if there is no number that fits the type
    int getValueAsInteger() const;

    /// @return as getValueAsInteger()
    float getValueAsFloat() const;

    /// @return whether the value begins, behind white space, with the word "true"
    bool getValueAsBoolean() const;

    /// @return the value of the element at `path`; `defaultValue` where there is no such element
    std::string getValue(const std::string& path, const std::string& defaultValue) const;

    /// @return the number at `path`; `defaultValue` where there is no such element. A value that is
    ///         there but cannot be read gives 0 all the same.
    int getValueAsInteger(const std::string& path, int defaultValue) const;

    /// @return as getValueAsInteger()
    float getValueAsFloat(const std::string& path, float defaultValue) const;

    /// @return whether the value at `path` begins with the word "true"; `defaultValue` where there
    ///         is no such element
    bool getValueAsBoolean(const std::string& path, bool defaultValue) const;

    /// Stores the text without the blanks, tabs, line feeds and carriage returns at its ends.
    void setValue(const std::string& text);

    /// Stores a text as above; null counts as empty.
    void setValue(const char* text);

    /// Stores the decimal text.
    void setValue(int number);

    /// Stores the text in fixed notation with six digits behind the point.
    void setValue(float number);

    /// Stores "true" or "false".
    void setValue(bool flag);

    /// @}
    /// @name Children
    /// Results are null where there is no such child. They stay owned by the tree, and valid until
    /// the child or an element above it is deleted, cleared, assigned to or destroyed.
    /// @{

    /// Appends a new child with an empty value.
    XMLElement* createChild(const std::string& name);

    /// Deletes one child.
    /// @return the child behind it. Null if it was the last one, or if `child` is no child of this
    ///         element (or null), and then nothing is deleted.
    XMLElement* deleteChild(XMLElement* child);

    /// Deletes all children with this name; an empty name means those whose name is empty.
    void deleteChild(const std::string& name);

    /// Deletes all children; name and value stay.
    void deleteChildren();

    /// Deletes all children and empties name and value.
    void clear();

    /// @return the first child with this name, or with any name if `name` is empty
    XMLElement* getChild(const std::string& name);

    /// @return the first child with this name, or with any name if `name` is empty
    const XMLElement* getChild(const std::string& name) const;

    /// @return the next sibling behind `child` with this name, or with any name if `name` is empty
    XMLElement* getNextChild(XMLElement* child, const std::string& name);

    /// @return the next sibling behind `child` with this name, or with any name if `name` is empty
    const XMLElement* getNextChild(const XMLElement* child, const std::string& name) const;

    /// @return the element at `path`. With `create`, what is missing on the way is created, behind
    ///         the children there are.
    XMLElement* findChild(const std::string& path, bool create = false);

    /// @return the element at `path`
    const XMLElement* findChild(const std::string& path) const;

    /// @}
    /// @name Text
    /// @{

    /// Replaces this element, name included, by the document in a file. A zero byte in the file
    /// ends the text. A pipe is read to its end, but one that nobody writes into is not waited for.
    /// @return as parse(); -1 if the file cannot be opened or read, or is empty
    int load(const std::string& filename);

    /// Replaces this element, name included, by the document in `source`. What stands behind the
    /// root element is not looked at. A text that ends early closes all elements that are open.
    /// @return the position behind the root's closing tag. Negative on failure: -1 or the negated
    ///         position of the fault. The element then holds what was read until there. A text of
    ///         2 GiB or more is refused.
    int parse(const std::string& source);

    /// Writes this element and all below it to a file, which is replaced: if `formatted`, an
    /// element a line, indented by tabs; otherwise with nothing put between the tags.
    /// @return the number of bytes of the text, at most the greatest `int`; -1 if the file cannot
    ///         be opened, such as a pipe that nobody reads. Only opening is checked: a disk that
    ///         fills up on the way is not noticed. Without enough memory the file is left alone.
    int save(const std::string& filename, bool formatted) const;

    /// @return the text of this element and all below it, with nothing put between the tags
    std::string toString() const;

    /// @return why the last call of load(), parse(), save() or validate() on any element failed. A
    ///         success does not change it.
    static std::string getLastError();

    /// @}
    /// @name Whole trees
    /// @{

    /// Holds this element and all below it against a template: a tree in which each element stands
    /// for the document's elements of its name at its place, with a rule as its value. A rule is a
    /// text such as `0-5:1-20`: in front of the first colon, how many elements of that name their
    /// parent may have, and behind it, how many bytes the value of each may have. Either is a
    /// range or a single number; both ends belong to it.
    ///
    /// Numbers are read up to the first byte that is no digit, behind white space, and count as 0
    /// without digits and as 4294967295 if they are greater. So an open range such as `1-` ends at
    /// 0, and there are no signs. The count of the root's rule, and the names of the two roots,
    /// have no effect. Comments in a document are passed over; a template can't have any, as their
    /// values are no rules. If a name stands twice in a template, both rules hold.
    ///
    /// The first fault counts. On each level these follow each other: the length of the element's
    /// value, names that the template doesn't have, and then, rule by rule, how many elements there
    /// are, each with all below it. Rules that are not reached are not looked at.
    ///
    /// It takes time in proportion to the elements and bytes of both trees, and at worst to the
    /// logarithm of how many children the elements have. Elements whose name is repeated in the
    /// template are looked at once for each.
    /// @param templateRoot what stands for this element; null counts as an element without a rule
    /// @return whether the document fits; if not, getLastError() tells why
    bool validate(const XMLElement* templateRoot) const;

    /// Adds the names and values of this element and all below it to a checksum, in the order in
    /// which they stand in the document, with nothing between them. Comments count. The checksum is
    /// neither reset nor finalized, so that it may take in several trees.
    void calculateChecksum(Checksum& checksum) const;

    /// @}

private:
    friend class ElementFinder;
    class Parser;
    class Validator;
    class Writer;

    XMLElement(std::string_view name, std::string_view value);

    XMLElement* addChild(XMLElement* child) noexcept;
    XMLElement* removeBehind(XMLElement* previous) noexcept;
    static XMLElement* findFrom(XMLElement* sibling, std::string_view name);
    void copyChildren(const XMLElement& other);
    bool hasDescendant(const XMLElement& element) const;
    void takeContent(XMLElement& other) noexcept;
    static void destroy(XMLElement* first) noexcept;
    static int fail(int result, const std::string& message);
    static bool reject(const std::string& message);
    static bool rejectRule(const XMLElement& templateElement);
    bool validate(const XMLElement* templateElement, unsigned int minLength,
                  unsigned int maxLength) const;
    bool parseTemplateRule(const std::string& rule, unsigned int& minCount, unsigned int& maxCount,
                           unsigned int& minLength, unsigned int& maxLength) const;

    static std::string* m_LastError; ///< null before the first failure

    XMLElement* m_NextSibling = nullptr;
    std::string m_Name;
    std::string m_Value;
    XMLElement* m_FirstChild = nullptr;
    XMLElement* m_LastChild = nullptr;
    bool m_IsChild = false; ///< owned by a parent, so it may stand below what is moved into it
};

} // namespace qor
