// SPDX-License-Identifier: MIT
#include "qor/XMLElement.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/NumberParsing.h"
#include "foundation/NumberWriting.h"
#include "foundation/Whitespace.h"
#include "platform/Platform.h"
#include "xml/ElementText.h"

namespace qor
{

namespace
{

/// Loads a text into the processor's cache before it is copied, which nearly halves the time of a
/// copy from memory outside the cache.
void prefetch(std::string_view text)
{
#if defined(__GNUC__)
    constexpr std::size_t CACHE_LINE = 64;
    for (std::size_t offset = 0; offset < text.size(); offset += CACHE_LINE) {
        __builtin_prefetch(text.data() + offset);
    }
#endif
}

/// Returns the lock of the last error. It is created on the first use and never destroyed, so that
/// elements may fail in constructors and destructors of static objects.
platform::TLock& getLastErrorLock()
{
    static std::atomic<platform::TLock*> lock = nullptr; // Constant-initialized.
    if (platform::TLock* const existing = lock.load(std::memory_order_acquire)) {
        return *existing;
    }
    platform::TLock* const created = platform::createLock();
    platform::makeForkSafe(*created);
    platform::TLock* expected = nullptr;
    if (!lock.compare_exchange_strong(expected, created, std::memory_order_acq_rel)) {
        platform::destroyLock(created);
        return *expected;
    }
    return *created;
}

/// Holds the lock of the last error until the end of the scope.
class LastErrorGuard
{
public:
    LastErrorGuard() : m_Lock(getLastErrorLock()) { platform::acquire(m_Lock); }
    LastErrorGuard(const LastErrorGuard&) = delete;
    LastErrorGuard& operator=(const LastErrorGuard&) = delete;
    ~LastErrorGuard() { platform::release(m_Lock); }

private:
    platform::TLock& m_Lock;
};

template<typename TText, typename TNumber>
void storeInteger(TText& text, TNumber number)
{
    char digits[std::numeric_limits<TNumber>::digits10 + 2];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    text.assign({digits, static_cast<std::size_t>(result.ptr - digits)});
}

template<typename TText, typename TNumber>
void storeFixed(TText& text, TNumber number)
{
    constexpr int FRACTION_DIGITS = 6;
    char buffer[fixedTextSize<TNumber>(FRACTION_DIGITS)];
    text.assign(writeFixed(buffer, number, FRACTION_DIGITS));
}

} // namespace

// A pointer, because static objects may use it before dynamic initialization and after the
// destruction of static objects.
std::string* XMLElement::m_LastError = nullptr;

XMLElement::XMLElement(const std::string& name) : m_Name(name) {}

XMLElement::XMLElement(std::string_view name, std::string_view value) : m_Name(name), m_Value(value)
{
}

// A delegating constructor runs its body on a complete object, so the destructor frees the copied
// children if memory runs out.

XMLElement::XMLElement(const XMLElement* other)
    : XMLElement(other ? std::string_view(other->m_Name) : std::string_view(),
                 other ? std::string_view(other->m_Value) : std::string_view())
{
    if (other) {
        copyChildren(*other);
    }
}

XMLElement::XMLElement(const XMLElement& other) : XMLElement(&other) {}

XMLElement::XMLElement(XMLElement&& other) noexcept
{
    moveContentFrom(other);
}

XMLElement::~XMLElement()
{
    destroy(m_FirstChild);
}

XMLElement& XMLElement::operator=(const XMLElement& other)
{
    if (this == &other) {
        return *this;
    }
    // Copied before the children are deleted, because `other` may be one of them.
    XMLElement copy(&other);
    deleteChildren();
    moveContentFrom(copy);
    return *this;
}

XMLElement& XMLElement::operator=(XMLElement&& other)
{
    if (this == &other) {
        return *this;
    }
    if (m_IsChild && other.hasDescendant(*this)) {
        return *this = static_cast<const XMLElement&>(other);
    }
    // Moved before the children are deleted, because `other` may be one of them.
    XMLElement content(std::move(other));
    deleteChildren();
    moveContentFrom(content);
    return *this;
}

std::string XMLElement::getName() const
{
    return std::string(m_Name);
}

void XMLElement::setName(const std::string& name)
{
    m_Name.assign(name);
}

std::string XMLElement::getValue() const
{
    return std::string(m_Value);
}

int XMLElement::getValueAsInteger() const
{
    return readInteger(m_Value).value_or(0);
}

float XMLElement::getValueAsFloat() const
{
    return readFloat(m_Value).value_or(0.0f);
}

bool XMLElement::getValueAsBoolean() const
{
    return readBoolean(m_Value).value_or(false);
}

std::string XMLElement::getValue(const std::string& path, const std::string& defaultValue) const
{
    const XMLElement* const element = findChild(path);
    return element ? element->getValue() : defaultValue;
}

int XMLElement::getValueAsInteger(const std::string& path, int defaultValue) const
{
    const XMLElement* const element = findChild(path);
    return element ? element->getValueAsInteger() : defaultValue;
}

float XMLElement::getValueAsFloat(const std::string& path, float defaultValue) const
{
    const XMLElement* const element = findChild(path);
    return element ? element->getValueAsFloat() : defaultValue;
}

bool XMLElement::getValueAsBoolean(const std::string& path, bool defaultValue) const
{
    const XMLElement* const element = findChild(path);
    return element ? element->getValueAsBoolean() : defaultValue;
}

void XMLElement::setValue(const std::string& text)
{
    m_Value.assign(trimmed(text));
}

void XMLElement::setValue(const char* text)
{
    m_Value.assign(trimmed(text ? text : ""));
}

void XMLElement::setValue(int number)
{
    storeInteger(m_Value, number);
}

void XMLElement::setValue(unsigned int number)
{
    storeInteger(m_Value, number);
}

void XMLElement::setValue(long number)
{
    storeInteger(m_Value, number);
}

void XMLElement::setValue(unsigned long number)
{
    storeInteger(m_Value, number);
}

void XMLElement::setValue(long long number)
{
    storeInteger(m_Value, number);
}

void XMLElement::setValue(unsigned long long number)
{
    storeInteger(m_Value, number);
}

void XMLElement::setValue(float number)
{
    storeFixed(m_Value, number);
}

void XMLElement::setValue(double number)
{
    storeFixed(m_Value, number);
}

void XMLElement::setValue(bool flag)
{
    m_Value.assign(flag ? "true" : "false");
}

XMLElement* XMLElement::createChild(const std::string& name)
{
    return addChild(new XMLElement(name));
}

XMLElement* XMLElement::deleteChild(XMLElement* child) noexcept
{
    if (!child) {
        return nullptr;
    }
    XMLElement* previous = nullptr;
    XMLElement* current = m_FirstChild;
    while (current && current != child) {
        previous = current;
        current = current->m_NextSibling;
    }
    if (!current) {
        return nullptr;
    }
    return removeAfter(previous);
}

void XMLElement::deleteChild(const std::string& name) noexcept
{
    XMLElement* previous = nullptr;
    XMLElement* current = m_FirstChild;
    while (current) {
        if (equalBytes(current->m_Name, name)) {
            current = removeAfter(previous);
        } else {
            previous = current;
            current = current->m_NextSibling;
        }
    }
}

void XMLElement::deleteChildren() noexcept
{
    destroy(m_FirstChild);
    m_FirstChild = nullptr;
    m_LastChild = nullptr;
}

void XMLElement::clear() noexcept
{
    deleteChildren();
    m_Name.clear();
    m_Value.clear();
}

XMLElement* XMLElement::getChild(const std::string& name) noexcept
{
    return findFrom(m_FirstChild, name);
}

const XMLElement* XMLElement::getChild(const std::string& name) const noexcept
{
    return findFrom(m_FirstChild, name);
}

XMLElement* XMLElement::getNextChild(XMLElement* child, const std::string& name) noexcept
{
    return child ? findFrom(child->m_NextSibling, name) : nullptr;
}

const XMLElement* XMLElement::getNextChild(const XMLElement* child,
                                           const std::string& name) const noexcept
{
    return child ? findFrom(child->m_NextSibling, name) : nullptr;
}

XMLElement* XMLElement::findChild(const std::string& path, bool create)
{
    std::string_view rest = path;
    if (!rest.empty() && rest.front() == '/') {
        rest.remove_prefix(1);
    }
    if (rest.empty()) {
        return this;
    }

    XMLElement* element = this;
    for (;;) {
        const std::size_t slash = rest.find('/');
        const std::string_view name = rest.substr(0, slash);
        XMLElement* child = findFrom(element->m_FirstChild, name);
        if (!child && create) {
            child = element->addChild(new XMLElement(name, {}));
        }
        if (!child || slash == std::string_view::npos) {
            return child;
        }
        element = child;
        rest.remove_prefix(slash + 1);
    }
}

const XMLElement* XMLElement::findChild(const std::string& path) const
{
    // The search does not change the tree unless it creates elements.
    return const_cast<XMLElement*>(this)->findChild(path, false);
}

std::string XMLElement::getLastError()
{
    const LastErrorGuard guard;
    return m_LastError ? *m_LastError : std::string();
}

int XMLElement::fail(int result, const std::string& message)
{
    auto text = std::make_unique<std::string>(message);
    const LastErrorGuard guard;
    if (!m_LastError) {
        // Frees the text when the process ends or unloads the library.
        std::atexit([] {
            const LastErrorGuard atExit;
            delete std::exchange(m_LastError, nullptr);
        });
    }
    text.reset(std::exchange(m_LastError, text.release()));
    return result;
}

/// Appends an element and takes ownership of it.
XMLElement* XMLElement::addChild(XMLElement* child) noexcept
{
    child->m_IsChild = true;
    if (m_LastChild) {
        m_LastChild->m_NextSibling = child;
    } else {
        m_FirstChild = child;
    }
    m_LastChild = child;
    return child;
}

/// Deletes the child after another one, or the first child if `previous` is null.
/// @return the next sibling of the deleted child
XMLElement* XMLElement::removeAfter(XMLElement* previous) noexcept
{
    XMLElement*& link = previous ? previous->m_NextSibling : m_FirstChild;
    XMLElement* const child = link;
    XMLElement* const next = child->m_NextSibling;
    link = next;
    if (!next) {
        m_LastChild = previous;
    }
    delete child;
    return next;
}

/// Returns the first element with a name in a list of siblings. An empty name matches every
/// element.
XMLElement* XMLElement::findFrom(XMLElement* sibling, std::string_view name) noexcept
{
    if (name.empty()) {
        return sibling;
    }
    while (sibling && !equalBytes(sibling->m_Name, name)) {
        sibling = sibling->m_NextSibling;
    }
    return sibling;
}

void XMLElement::copyChildren(const XMLElement& other)
{
    struct TLevel {
        const XMLElement* source;
        XMLElement* copiesParent;
    };
    std::vector<TLevel> ancestors;
    const XMLElement* source = other.m_FirstChild;
    XMLElement* parent = this;
    while (source) {
        prefetch(source->m_Value);
        XMLElement* const copy = parent->addChild(new XMLElement(source->m_Name, source->m_Value));
        if (source->m_FirstChild) {
            ancestors.push_back({source, parent});
            source = source->m_FirstChild;
            parent = copy;
            continue;
        }
        while (!source->m_NextSibling && !ancestors.empty()) {
            source = ancestors.back().source;
            parent = ancestors.back().copiesParent;
            ancestors.pop_back();
        }
        source = source->m_NextSibling;
    }
}

bool XMLElement::hasDescendant(const XMLElement& element) const
{
    std::vector<const XMLElement*> lists{m_FirstChild};
    while (!lists.empty()) {
        const XMLElement* sibling = lists.back();
        lists.pop_back();
        for (; sibling; sibling = sibling->m_NextSibling) {
            if (sibling == &element) {
                return true;
            }
            if (sibling->m_FirstChild) {
                lists.push_back(sibling->m_FirstChild);
            }
        }
    }
    return false;
}

/// Moves name, value and children from another element. This element must not have children.
void XMLElement::moveContentFrom(XMLElement& other) noexcept
{
    m_Name = std::move(other.m_Name);
    m_Value = std::move(other.m_Value);
    m_FirstChild = std::exchange(other.m_FirstChild, nullptr);
    m_LastChild = std::exchange(other.m_LastChild, nullptr);
    other.m_Name.clear();
    other.m_Value.clear();
}

/// Destroys a list of siblings and their descendants without recursion: the children of each
/// element are inserted before its next sibling, so that one list remains.
void XMLElement::destroy(XMLElement* first) noexcept
{
    while (first) {
        XMLElement* const element = first;
        first = element->m_NextSibling;
        if (element->m_FirstChild) {
            element->m_LastChild->m_NextSibling = first;
            first = std::exchange(element->m_FirstChild, nullptr);
        }
        delete element;
    }
}

} // namespace qor
