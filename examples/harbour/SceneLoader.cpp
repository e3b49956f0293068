// SPDX-License-Identifier: MIT
#include "SceneLoader.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <utility>

#include "shared/Text.h"

namespace
{

/// Returns the position of a tag in a document, without those in comments.
/// @param number how many such tags precede it
std::size_t findTag(const std::string& source, const std::string& tag, int number)
{
    for (std::size_t at = source.find('<'); at != std::string::npos;
         at = source.find('<', at + 1)) {
        if (source.compare(at, 4, "<!--") == 0) {
            at = std::min(source.find("-->", at), source.size());
        } else if (source.compare(at, tag.size(), tag) == 0 && number-- == 0) {
            return at;
        }
    }
    return 0;
}

/// Returns the position of the element that an error is about: its text names the element first.
std::size_t findError(const std::string& source, const Scene::TError& error)
{
    const std::size_t parent = findTag(source, error.tag, error.number);
    const std::size_t begin = error.text.find('\'') + 1;
    const std::string name = error.text.substr(begin, error.text.find('\'', begin) - begin);
    const std::size_t child = source.find("<" + name + ">", parent);
    return child < source.find("</" + error.tag.substr(1), parent) ? child : parent;
}

} // namespace

bool SceneLoader::start(const std::string& filename)
{
    if (m_IsBusy) {
        return false;
    }
    m_Filename = filename;
    m_IsDone = false;
    m_IsBusy = m_Thread.start(this);
    return m_IsBusy;
}

SceneLoader::TResult SceneLoader::takeResult()
{
    m_Thread.wait();
    m_IsBusy = false;
    return std::exchange(m_Result, TResult());
}

void SceneLoader::run()
{
    try {
        std::error_code unused;
        if (std::filesystem::exists(m_Filename, unused) &&
            !std::filesystem::is_regular_file(m_Filename, unused)) {
            m_Result.error = "Cannot load " + quote(m_Filename) + ": it is not a file";
        } else {
            std::ifstream file(m_Filename, std::ios::binary);
            const std::string source{std::istreambuf_iterator<char>(file), {}};
            qor::XMLElement document("");
            Scene::TError error;
            const int code = document.load(m_Filename);
            if (!file.is_open()) {
                m_Result.error = "Cannot load a scene: " + qor::XMLElement::getLastError();
            } else if (code < 0) {
                fail(source, static_cast<std::size_t>(-code), qor::XMLElement::getLastError());
            } else if (!m_Result.scene.assign(document, m_Pattern, error)) {
                fail(source, findError(source, error), error.text);
            }
        }
    } catch (const std::bad_alloc&) {
        m_Result.error = "Out of memory";
    }
    m_IsDone = true;
}

void SceneLoader::fail(const std::string& source, std::size_t position, const std::string& reason)
{
    const std::string before = source.substr(0, position);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
    m_Result.error =
        m_Filename + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + reason;
}
