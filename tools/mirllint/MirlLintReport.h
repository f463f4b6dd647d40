// Findings of a skin check, in the order a reader of the skin meets them, written as lines
// "FILE: severity: PATH: message [rule]" or as JSON.
#pragma once

#include <string>
#include <vector>

namespace mirllint {

enum class Severity { Warning, Error };

// Where a finding belongs: a document of the package, an element path in it, and the node's
// place in load order (includes counted where they stand), which sorts the report.
struct Location {
    std::wstring file;
    std::wstring path;
    unsigned long order = 0;
};

struct Finding {
    Severity severity = Severity::Error;
    Location where;
    std::wstring message;
    std::wstring rule;
    // 0: the library's own verdict, 1: a node of a document, 2: the skin as a whole.
    int phase = 1;
};

// How many of the base language's texts each other language has.
struct CoverageRow {
    unsigned int language = 0;
    unsigned int present = 0;
    std::vector<std::wstring> missing;
};

struct Coverage {
    unsigned int base = 1033;
    unsigned int texts = 0;
    std::vector<CoverageRow> rows;
};

class Report {
public:
    void Add(Severity severity, const Location &where, const std::wstring &message, const wchar_t *rule, int phase = 1);
    // Library verdict first, then nodes in load order, then the skin as a whole; findings of
    // one node keep the order in which they were made.
    void Sort();

    size_t Errors() const;
    size_t Warnings() const;
    const std::vector<Finding> &Findings() const { return m_Findings; }
    Coverage &GetCoverage() { return m_Coverage; }
    const Coverage &GetCoverage() const { return m_Coverage; }

    // One line per finding, then the coverage table when there is one.
    std::wstring Text() const;
    std::wstring Json(const std::wstring &package) const;

private:
    std::vector<Finding> m_Findings;
    Coverage m_Coverage;
};

// One finding as a line, without its line break.
std::wstring FormatLine(const Finding &finding);

} // namespace mirllint
