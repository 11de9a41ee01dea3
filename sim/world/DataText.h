// Reading the simulator's text data files (navigation data, the terrain file, OBJ8 objects,
// library.txt and scenery_packs.ini): lines cut into white-space separated words, and numbers read
// strictly.
#pragma once

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace xpsim {
namespace data_text {

using Words = std::vector<std::string>;

// The words of a line; a word starting with '#' starts a comment that runs to the end of the line.
inline Words SplitWords(const std::string& line) {
    Words words;
    size_t pos = 0;
    while (true) {
        pos = line.find_first_not_of(" \t\r", pos);
        if (pos == std::string::npos) break;
        const size_t end = std::min(line.find_first_of(" \t\r", pos), line.size());
        if (line[pos] == '#') break;
        words.push_back(line.substr(pos, end - pos));
        pos = end;
    }
    return words;
}

// The rest of a line after its first `skip` words, up to a comment and without the white space
// around it (for file names, which may hold spaces).
inline std::string RestOfLine(const std::string& line, size_t skip) {
    size_t pos = 0;
    for (size_t i = 0; i < skip; ++i) {
        pos = line.find_first_not_of(" \t\r", pos);
        if (pos == std::string::npos) return "";
        pos = line.find_first_of(" \t\r", pos);
        if (pos == std::string::npos) return "";
    }
    const size_t begin = line.find_first_not_of(" \t\r", pos);
    if (begin == std::string::npos || line[begin] == '#') return "";
    std::string rest = line.substr(begin);
    for (size_t i = 1; i < rest.size(); ++i) {
        if (rest[i] == '#' && (rest[i - 1] == ' ' || rest[i - 1] == '\t')) {
            rest.resize(i);
            break;
        }
    }
    return rest.substr(0, rest.find_last_not_of(" \t\r") + 1);
}

// A finite decimal number, the whole word.
inline bool Real(const std::string& text, double& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtod(text.c_str(), &end);
    return *end == '\0' && errno != ERANGE && std::isfinite(value);
}

// A whole number in the range of int, the whole word.
inline bool Whole(const std::string& text, int& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    errno = 0;
    const long parsed = std::strtol(text.c_str(), &end, 10);
    if (*end != '\0' || errno == ERANGE || parsed < std::numeric_limits<int>::min() ||
        parsed > std::numeric_limits<int>::max())
        return false;
    value = int(parsed);
    return true;
}

// Calls row(line, words, number) for every line of a file with its line number from 1, the line
// without its line end. False when the file cannot be opened.
template <typename Row>
bool ForEachLine(const std::string& path, Row row) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!row(line, SplitWords(line), number)) break;
    }
    return true;
}

}  // namespace data_text
}  // namespace xpsim
