#include "MirlLintReport.h"

#include <algorithm>
#include <cwchar>

namespace mirllint {

void Report::Add(Severity severity, const Location &where, const std::wstring &message, const wchar_t *rule, int phase)
{
    Finding finding;
    finding.severity = severity;
    finding.where = where;
    finding.message = message;
    finding.rule = rule;
    finding.phase = phase;
    m_Findings.push_back(finding);
}

void Report::Sort()
{
    std::stable_sort(m_Findings.begin(), m_Findings.end(), [](const Finding &a, const Finding &b) {
        if (a.phase != b.phase) {
            return a.phase < b.phase;
        }
        return a.phase == 1 && a.where.order < b.where.order;
    });
}

size_t Report::Errors() const
{
    return static_cast<size_t>(std::count_if(m_Findings.begin(), m_Findings.end(),
                                             [](const Finding &f) { return f.severity == Severity::Error; }));
}

size_t Report::Warnings() const
{
    return m_Findings.size() - Errors();
}

std::wstring FormatLine(const Finding &finding)
{
    std::wstring line = finding.where.file + L": " + (finding.severity == Severity::Error ? L"error: " : L"warning: ");
    if (!finding.where.path.empty()) {
        line += finding.where.path + L": ";
    }
    return line + finding.message + L" [" + finding.rule + L"]";
}

std::wstring Report::Text() const
{
    std::wstring text;
    for (const Finding &finding : m_Findings) {
        text += FormatLine(finding) + L"\n";
    }
    if (!m_Coverage.rows.empty()) {
        wchar_t line[128];
        std::swprintf(line, 128, L"\ntext coverage against language %u (%u texts):\n", m_Coverage.base, m_Coverage.texts);
        text += line;
        text += L"  language  present  missing\n";
        for (const CoverageRow &row : m_Coverage.rows) {
            std::swprintf(line, 128, L"  %-8u  %-7u  %u\n", row.language, row.present,
                          static_cast<unsigned>(row.missing.size()));
            text += line;
        }
    }
    return text;
}

namespace {

std::wstring JsonString(const std::wstring &value)
{
    std::wstring out = L"\"";
    for (wchar_t c : value) {
        switch (c) {
        case L'"': out += L"\\\""; break;
        case L'\\': out += L"\\\\"; break;
        case L'\n': out += L"\\n"; break;
        case L'\r': out += L"\\r"; break;
        case L'\t': out += L"\\t"; break;
        default:
            if (c < 0x20) {
                wchar_t escape[8];
                std::swprintf(escape, 8, L"\\u%04x", static_cast<unsigned>(c));
                out += escape;
            } else {
                out += c;
            }
        }
    }
    return out + L"\"";
}

} // namespace

std::wstring Report::Json(const std::wstring &package) const
{
    std::wstring json = L"{\n  \"package\": " + JsonString(package) + L",\n  \"findings\": [";
    for (size_t i = 0; i < m_Findings.size(); ++i) {
        const Finding &f = m_Findings[i];
        json += i == 0 ? L"\n" : L",\n";
        json += L"    {\"file\": " + JsonString(f.where.file) + L", \"severity\": " +
                JsonString(f.severity == Severity::Error ? L"error" : L"warning") + L", \"path\": " +
                JsonString(f.where.path) + L", \"message\": " + JsonString(f.message) + L", \"rule\": " +
                JsonString(f.rule) + L"}";
    }
    json += m_Findings.empty() ? L"],\n" : L"\n  ],\n";
    json += L"  \"coverage\": {\"base\": " + std::to_wstring(m_Coverage.base) + L", \"texts\": " +
            std::to_wstring(m_Coverage.texts) + L", \"languages\": [";
    for (size_t i = 0; i < m_Coverage.rows.size(); ++i) {
        const CoverageRow &row = m_Coverage.rows[i];
        json += i == 0 ? L"" : L", ";
        json += L"{\"language\": " + std::to_wstring(row.language) + L", \"present\": " + std::to_wstring(row.present) +
                L", \"missing\": [";
        for (size_t m = 0; m < row.missing.size(); ++m) {
            json += (m == 0 ? L"" : L", ") + JsonString(row.missing[m]);
        }
        json += L"]}";
    }
    json += L"]},\n  \"errors\": " + std::to_wstring(Errors()) + L",\n  \"warnings\": " + std::to_wstring(Warnings()) +
            L"\n}\n";
    return json;
}

} // namespace mirllint
