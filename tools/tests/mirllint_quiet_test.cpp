// Every rule of mirllint stays silent on a skin that comes close to it but is right: the same
// construct written the way the loader reads it. Each row names the skin, the document and the
// construct, and says how to write the construct wrong; written wrong, the rule fires. So each
// silence is one edit away from a finding, and a rule that stopped firing or fired too widely
// shows here.
#include "MirlToolRunner.h"

#include "MirlLintChecks.h"
#include "MirlLintRules.h"
#include "MirlToolSupport.h"
#include "MirlSkinCase.h"
#include "MirlSkinCorpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

using mirltooltest::Quote;
using mirltooltest::RunResult;
using mirltooltest::RunTool;

namespace {

// One replacement in a document: the text as the skin has it, and the text that breaks it.
struct Edit {
    const char *from;
    const char *to;
};

struct NearMiss {
    const wchar_t *rule;
    const char *skin;      // a folder of tests/fixtures, zipped as skins/NAME.zip
    const char *document;  // the package entry with the construct; null for the package itself
    Edit edits[2];         // every occurrence of from becomes to; to null: no wrong version
};

const NearMiss kNearMisses[] = {
    // Includes, sections and documents. The include chain Skin -> Parts -> More is no cycle.
    {L"include-cycle", "lint_quiet_structure", "Parts.xml", {{"<Include File=\"More.xml\"/>", "<Include File=\"Skin.xml\"/>"}}},
    // Two includes of two documents.
    {L"include-repeated", "lint_quiet_structure", "Skin.xml", {{"<Include File=\"Extra.xml\"/>", "<Include File=\"Parts.xml\"/>"}}},
    {L"include-missing", "lint_quiet_structure", "Skin.xml", {{"<Include File=\"Extra.xml\"/>", "<Include File=\"Extras.xml\"/>"}}},
    // An include directly under Skin, right before a section.
    {L"include-misplaced", "lint_quiet_structure", "Skin.xml",
     {{"<Include File=\"Parts.xml\"/><Text>", "<Text><Include File=\"Parts.xml\"/>"}}},
    // A comment after the root element.
    {L"not-well-formed", "lint_quiet_structure", "More.xml", {{"<!-- A comment after the root element is allowed. -->", "<Skin/>"}}},
    {L"root-not-skin", "lint_quiet_structure", "Extra.xml", {{"<Skin><Text>", "<skin><Text>"}, {"</Text></Skin>", "</Text></skin>"}}},
    {L"section-case", "lint_quiet_structure", "Skin.xml", {{"<Colors><ClrPanel", "<colors><ClrPanel"}, {"</Colors>", "</colors>"}}},
    // "Infoes" looks misspelt and is the section's name.
    {L"unknown-section", "lint_quiet_structure", "Skin.xml", {{"<Infoes Title=", "<Infos Title="}}},
    // Text inside a text element is not read; text beside it is.
    {L"text-in-section", "lint_quiet_structure", "More.xml",
     {{"<TxtMore Text=\"More\">words inside an element are not read</TxtMore>",
       "<TxtMore Text=\"More\"/>words inside an element are not read"}}},
    // The library and mirllint count the same definitions around text the loader skips. No skin
    // is meant to make them disagree: the wrong version is a walk that lost TxtMore.
    {L"lint-mismatch", "lint_quiet_structure", "More.xml", {{"words inside an element are not read", nullptr}}},
    // A package that opens; cut in half, it doesn't.
    {L"package-unreadable", "lint_quiet_structure", nullptr, {}},

    // Element values at the edges of what converts, and languages as the loader reads them.
    {L"loader-error", "lint_quiet_values", "Skin.xml", {{"Green=\"255\"", "Green=\"256\""}}},
    {L"unconvertible-value", "lint_quiet_values", "Skin.xml", {{"<Language Id=\"2052\">", "<Language Id=\"0x0804\">"}}},
    {L"attribute-case", "lint_quiet_values", "Skin.xml", {{"Red=\"0\"", "red=\"0\""}}},
    {L"unknown-attribute", "lint_quiet_values", "Skin.xml", {{"Alpha=\"255\"", "Opacity=\"255\""}}},
    {L"font-family-too-long", "lint_quiet_values", "Skin.xml",
     {{"FamilyName=\"Thirty-one characters, no more.\"", "FamilyName=\"Thirty-one characters, no more..\""}}},
    // The same names in two languages.
    {L"shadowed-definition", "lint_quiet_values", "Skin.xml", {{"<Language Id=\"2052\">", "<Language Id=\"1033\">"}}},
    {L"text-no-fallback", "lint_quiet_values", "Skin.xml", {{"<TxtStop Text=\"Stop\"/>", "<TxtHalt Text=\"Stop\"/>"}}},
    // Every text in both languages.
    {L"text-coverage", "lint_quiet_values", "Skin.xml",
     {{"<TxtStop Text=\"&#x505C;&#x6B62;\"/>", "<TxtHalt Text=\"&#x505C;&#x6B62;\"/>"}}},
    {L"comment-in-language", "lint_quiet_values", "Skin.xml",
     {{"<!-- Comments stand outside the language blocks. --><Language Id=\"2052\">",
       "<Language Id=\"2052\"><!-- Comments stand outside the language blocks. -->"}}},

    // Templates and references.
    {L"template-too-few-attributes", "lint_quiet_windows", "Skin.xml", {{"<Pair Class=\"STATIC\" Width=\"10\"/>", "<Pair Class=\"STATIC\"/>"}}},
    // Template attributes are found in any letter case...
    {L"template-no-class", "lint_quiet_windows", "Skin.xml", {{"<Field class=\"Edit\"", "<Field kind=\"Edit\""}}},
    // ...and so are classes.
    {L"unknown-class", "lint_quiet_windows", "Skin.xml", {{"<Label Class=\"static\"", "<Label Class=\"statik\""}}},
    // A list inside a combo box is the list the library has.
    {L"class-listbox", "lint_quiet_windows", "Skin.xml", {{"<Combo Class=\"COMBOBOX\"", "<Combo Class=\"LISTBOX\""}}},
    // Two windows of one name under two parents; under one parent they collide.
    {L"duplicate-sibling", "lint_quiet_windows", "Skin.xml",
     {{"</Left><Right Class=\"WINDOW\" Width=\"100\">", ""}, {"</Right>", "</Left>"}}},
    // Blanks between the words, and BS_BACKIMGE, spelt as the table spells it.
    {L"style-word", "lint_quiet_windows", "Skin.xml",
     {{"WS_CHILD | WS_VISIBLE | BS_BACKIMGE", "WS_CHILD | WS_VISIBLE | BS_BACKIMAGE"}}},
    {L"position-word", "lint_quiet_windows", "Skin.xml", {{"Align=\"ALIGN_PARENT_RIGHT|", "Align=\"ALIGN_RIGHT|"}}},
    {L"layout-word", "lint_quiet_windows", "Skin.xml", {{"|ALIGN_LEFT\"", "|ALIGN_PARENT_LEFT\""}}},
    {L"style-not-child", "lint_quiet_windows", "Skin.xml",
     {{"Style=\"WS_CHILD|WS_VISIBLE|WS_CLIPSIBLINGS\"", "Style=\"WS_VISIBLE|WS_CLIPSIBLINGS\""}}},
    // Hexadecimal and negative numbers are numbers in templates.
    {L"template-number", "lint_quiet_windows", "Skin.xml", {{"CommandID=\"0x1001\"", "CommandID=\"0x1001h\""}}},
    {L"template-boolean", "lint_quiet_windows", "Skin.xml", {{"Transparent=\"TRUE\"", "Transparent=\"yes\""}}},
    // A colour of 1033 alone, found from 2052 through the fallback.
    {L"missing-element", "lint_quiet_windows", "Skin.xml", {{"<ClrPanel Red=", "<ClrPane Red="}}},
    {L"control-image-missing", "lint_quiet_windows", "Skin.xml", {{"<CmBtn3 File=", "<CmBtn4 File="}}},
    {L"control-color-missing", "lint_quiet_windows", "Skin.xml", {{"<EditBorder Red=", "<EditFrame Red="}}},
    {L"image-file-missing", "lint_quiet_windows", "Skin.xml",
     {{"<ImgFace File=\"Images/Face.png\"", "<ImgFace File=\"Images/Face.jpg\""}}},
    {L"image-unreadable", "lint_quiet_windows", "Skin.xml",
     {{"<CmBtnArrow File=\"Images/Face.png\"/>", "<CmBtnArrow File=\"Skin.xml\"/>"}}},
    // https in 1033 and mailto in 2052.
    {L"url-scheme", "lint_quiet_windows", "Skin.xml",
     {{"<TxtHome Text=\"https://example.org/player\"/>", "<TxtHome Text=\"ftp://example.org/player\"/>"}}},

    // A button with an identifier of its own is drawn.
    {L"button-no-command-id", "lint_quiet_windows", "Skin.xml", {{"CommandID=\"0x1001\" X=\"-4\"", "X=\"-4\""}}},
    // A tab strip of two tabs and a stack of one folder.
    {L"toolbar-no-tab", "lint_quiet_containers", "Skin.xml",
     {{"<TabOne Class=\"TABBUTTON\"", "<TabOne Class=\"STATIC\""}, {"<TabTwo Class=\"TABBUTTON\"", "<TabTwo Class=\"STATIC\""}}},
    {L"toolbar-child-not-tab", "lint_quiet_containers", "Skin.xml", {{"<TabTwo Class=\"TABBUTTON\"", "<TabTwo Class=\"STATIC\""}}},
    {L"outlook-no-folder", "lint_quiet_containers", "Skin.xml",
     {{"<FolderOne Class=\"WINDOW\" CommandID=\"0x201\" Height=\"50\" Align=\"ALIGN_PARENT_HEIGHT\"/>", ""}}},
    {L"outlook-folder-children", "lint_quiet_containers", "Skin.xml",
     {{"Align=\"ALIGN_PARENT_HEIGHT\"/>", "Align=\"ALIGN_PARENT_HEIGHT\"><Label Class=\"STATIC\" Width=\"50\"/></FolderOne>"}}},
    {L"outlook-folder-no-command-id", "lint_quiet_containers", "Skin.xml", {{"CommandID=\"0x201\" ", ""}}},

    // Exactly as many documents and bytes as the loader reads: Skin.xml and 1,023 includes;
    // eighty reads of a document, the last begun below 8 MiB.
    // These two skins are made by the test (GeneratedSkin): a thousand documents or 8 MiB.
    {L"include-limit", "generated_includes", "Skin.xml",
     {{"<Text><TxtEnd", "<Include File=\"D0001.xml\"/><Text><TxtEnd"}}},
    {L"document-size-limit", "generated_bytes", "Skin.xml",
     {{"<Text><TxtEnd", "<Include File=\"B01.xml\"/><Text><TxtEnd"}}},

    // Exactly as deep as the loader reads: 32 nested includes, 64 template levels.
    {L"include-too-deep", "lint_quiet_depth", "Deep32.xml",
     {{"<Text><TxtDeepest Text=\"Deepest\"/></Text>", "<Include File=\"Deep33.xml\"/>"}}},
    {L"template-too-deep", "lint_quiet_depth", "Skin.xml",
     {{"<L64 Class=\"WINDOW\" Width=\"1\"/>", "<L64 Class=\"WINDOW\" Width=\"1\"><L65 Class=\"WINDOW\" Width=\"1\"/></L64>"}}},
};

std::string Narrow(const std::wstring &text)
{
    return mirlfuzz::Narrow(text);
}

mirlfuzz::SkinFile Document(const std::string &name, const std::string &text)
{
    return mirlfuzz::SkinFile{name, mirlfuzz::Bytes(text.begin(), text.end())};
}

// Skins at the loader's limits, too large to keep as fixtures: every document distinct, so
// that nothing else is reported. generated_includes is Skin.xml and 1,023 includes, the
// 1,024 documents the loader follows at most. generated_bytes is eighty documents whose last
// begins below the 8 MiB the loader reads at most and ends above it.
mirlfuzz::CorpusSkin GeneratedSkin(const std::string &label)
{
    mirlfuzz::CorpusSkin skin{label, {}};
    const bool includes = label == "generated_includes";
    const int count = includes ? MirlUI::MaxDocuments - 1 : 80;
    std::string main = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Skin>\n";
    std::vector<std::string> names;
    for (int i = 1; i <= count; ++i) {
        char name[16];
        std::snprintf(name, sizeof(name), includes ? "D%04d.xml" : "B%02d.xml", i);
        names.push_back(name);
        main += std::string("  <Include File=\"") + name + "\"/>\n";
    }
    main += "  <Text><TxtEnd Text=\"End\"/></Text>\n</Skin>\n";
    skin.files.push_back(Document("Skin.xml", main));
    const size_t limit = MirlUI::MaxDocumentBytes;
    const size_t size = includes ? 0 : (limit - main.size()) / count + 64;
    if (!includes) {
        EXPECT_LT(main.size() + (count - 1) * size, limit);
        EXPECT_GE(main.size() + count * size, limit);
    }
    for (int i = 0; i < count; ++i) {
        std::string text = "<Skin><Text><Txt" + std::to_string(i + 1) + " Text=\"" + std::to_string(i + 1) + "\"/></Text>";
        const std::string end = "</Skin>\n";
        if (text.size() + end.size() + 9 < size) {
            text += "<!--" + std::string(size - text.size() - end.size() - 7, 'x') + "-->";
        }
        skin.files.push_back(Document(names[static_cast<size_t>(i)], text + end));
    }
    if (!includes) {
        EXPECT_EQ(size, skin.files.back().data.size());
    }
    return skin;
}

const mirlfuzz::CorpusSkin *FindSkin(const char *label)
{
    static std::map<std::string, mirlfuzz::CorpusSkin> generated;
    if (std::strncmp(label, "generated_", 10) == 0) {
        auto found = generated.find(label);
        if (found == generated.end()) {
            found = generated.emplace(label, GeneratedSkin(label)).first;
        }
        return &found->second;
    }
    static const std::vector<mirlfuzz::CorpusSkin> corpus = mirlfuzz::LoadCorpus(mirlfuzz::DefaultCorpusFolder());
    for (const mirlfuzz::CorpusSkin &skin : corpus) {
        if (skin.label == label) {
            return &skin;
        }
    }
    return nullptr;
}

mirlfuzz::SkinFile *FindFile(std::vector<mirlfuzz::SkinFile> &files, const char *name)
{
    for (mirlfuzz::SkinFile &file : files) {
        if (file.name == name) {
            return &file;
        }
    }
    return nullptr;
}

size_t Occurrences(const std::string &text, const char *what)
{
    size_t count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++count;
    }
    return count;
}

std::string Replaced(std::string text, const char *from, const char *to)
{
    const size_t length = strlen(from);
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + strlen(to))) {
        text.replace(at, length, to);
    }
    return text;
}

// The rules named by the lines of a report, in order.
std::vector<std::wstring> RulesOf(const RunResult &result)
{
    std::vector<std::wstring> rules;
    for (const std::wstring &line : result.out) {
        if (line.empty()) {
            break;  // the coverage table follows
        }
        size_t open = line.rfind(L" [");
        if (open != std::wstring::npos && line.back() == L']') {
            rules.push_back(line.substr(open + 2, line.size() - open - 3));
        }
    }
    return rules;
}

bool Mentions(const RunResult &result, const std::wstring &rule)
{
    const std::wstring tag = L"[" + rule + L"]";
    return std::any_of(result.out.begin(), result.out.end(),
                       [&](const std::wstring &line) { return line.find(tag) != std::wstring::npos; });
}

RunResult LintPackage(const mirlfuzz::Bytes &package, const std::wstring &name);

// mirllint on a zipped fixture, run once per skin.
const RunResult &LintFixture(const char *skin)
{
    static std::map<std::string, RunResult> runs;
    auto found = runs.find(skin);
    if (found == runs.end() && std::strncmp(skin, "generated_", 10) == 0) {
        found = runs.emplace(skin, LintPackage(mirlfuzz::PlainPackage(*FindSkin(skin)), mirlfuzz::Widen(skin))).first;
    }
    if (found == runs.end()) {
        const std::wstring path = mirltooltest::Skin(mirlfuzz::Widen(skin).c_str());
        found = runs.emplace(skin, RunTool(L"mirllint.exe", Quote(path))).first;
    }
    return found->second;
}

// mirllint on a package written for one test, removed afterwards.
RunResult LintPackage(const mirlfuzz::Bytes &package, const std::wstring &name)
{
    wchar_t temp[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, temp);
    const std::wstring path = std::wstring(temp) + L"mirllint-" + std::to_wstring(::GetCurrentProcessId()) + L"-" + name + L".zip";
    RunResult result;
    if (!mirlfuzz::WriteWholeFile(path, package)) {
        ADD_FAILURE() << "could not write " << Narrow(path);
        return result;
    }
    result = RunTool(L"mirllint.exe", Quote(path));
    ::DeleteFileW(path.c_str());
    return result;
}

// The findings of comparing the library's maps with a walk of the fixture that lost one
// definition, in this process.
std::vector<mirllint::Finding> CompareWithAWalkThatLost(const char *skin, const wchar_t *definition)
{
    const std::wstring path = mirltooltest::Skin(mirlfuzz::Widen(skin).c_str());
    mirltool::LibraryStart start = mirltool::StartLibrary(path.c_str(), 1033);
    mirllint::Report report;
    if (start.loaded) {
        mirllint::Skin walked;
        mirllint::WalkSkin(MirlUI::Instance(), walked, report);
        auto lost = std::find_if(walked.definitions.begin(), walked.definitions.end(),
                                 [&](const mirllint::Definition &d) { return d.name == definition; });
        if (lost != walked.definitions.end()) {
            walked.definitions.erase(lost);
            mirllint::CompareWithLibrary(MirlUI::Instance(), walked, true, 0, report);
        }
    }
    MirlUnIntialize();
    EXPECT_TRUE(start.loaded) << skin;
    return report.Findings();
}

class MirlLintNearMiss : public testing::TestWithParam<NearMiss> {
protected:
    // The fixture's files as the build zips them, checked to hold the construct.
    void SetUp() override
    {
        const NearMiss &row = GetParam();
        const mirlfuzz::CorpusSkin *skin = FindSkin(row.skin);
        ASSERT_NE(nullptr, skin) << row.skin << " is not beside the program in fuzz-corpus";
        m_Files = skin->files;
        if (row.document == nullptr) {
            return;
        }
        mirlfuzz::SkinFile *document = FindFile(m_Files, row.document);
        ASSERT_NE(nullptr, document) << row.skin << " has no " << row.document;
        const std::string text(document->data.begin(), document->data.end());
        for (const Edit &edit : row.edits) {
            if (edit.from != nullptr) {
                EXPECT_EQ(1u, Occurrences(text, edit.from)) << row.document << " of " << row.skin << ": " << edit.from;
            }
        }
    }

    std::vector<mirlfuzz::SkinFile> m_Files;
};

void PrintTo(const NearMiss &row, std::ostream *out)
{
    *out << Narrow(row.rule) << " near " << row.skin;
}

std::string RowName(const testing::TestParamInfo<NearMiss> &info)
{
    std::string name = Narrow(info.param.rule);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

} // namespace

TEST(MirlLintNearMisses, EveryRuleHasOneNearMiss)
{
    std::multiset<std::wstring> rows;
    for (const NearMiss &row : kNearMisses) {
        rows.insert(row.rule);
    }
    const std::vector<std::wstring> &rules = mirllint::RuleNames();
    EXPECT_EQ(47u, rules.size());
    EXPECT_EQ(std::multiset<std::wstring>(rules.begin(), rules.end()), rows);
}

TEST(MirlLintNearMisses, TheNearMissSkinsHaveNoFindings)
{
    std::set<std::string> skins;
    for (const NearMiss &row : kNearMisses) {
        skins.insert(row.skin);
    }
    for (const std::string &skin : skins) {
        const RunResult &result = LintFixture(skin.c_str());
        ASSERT_TRUE(result.finished) << skin;
        EXPECT_EQ(0u, result.exitCode) << skin;
        for (const std::wstring &line : result.out) {
            if (line.empty()) {
                break;
            }
            ADD_FAILURE() << skin << ": " << Narrow(line);
        }
    }
}

TEST_P(MirlLintNearMiss, IsSilent)
{
    const NearMiss &row = GetParam();
    const RunResult &result = LintFixture(row.skin);
    ASSERT_TRUE(result.finished) << row.skin;
    for (const std::wstring &line : result.out) {
        EXPECT_EQ(std::wstring::npos, line.find(L"[" + std::wstring(row.rule) + L"]")) << row.skin << ": " << Narrow(line);
    }
    // mirllint got as far as its summary.
    ASSERT_FALSE(result.err.empty());
    EXPECT_EQ(0u, result.err.back().find(L"mirllint: ")) << Narrow(result.err.back());
}

TEST_P(MirlLintNearMiss, FiresOnceTheConstructIsWrittenWrong)
{
    const NearMiss &row = GetParam();
    if (row.document != nullptr && row.edits[0].to == nullptr) {
        std::vector<mirllint::Finding> findings = CompareWithAWalkThatLost(row.skin, L"TxtMore");
        ASSERT_EQ(1u, findings.size());
        EXPECT_EQ(row.rule, findings[0].rule);
        EXPECT_EQ(L"mirllint read 3 texts of language 1033 where the library read 4: this report may be incomplete",
                  findings[0].message);
        return;
    }
    mirlfuzz::Bytes package;
    if (row.document == nullptr) {
        // Half a package: the directory at its end is gone.
        package = mirlfuzz::PlainPackage(mirlfuzz::CorpusSkin{row.skin, m_Files});
        ASSERT_GT(package.size(), 100u);
        EXPECT_EQ(0, memcmp(package.data(), "PK\x03\x04", 4));
        package.resize(package.size() / 2);
    } else {
        mirlfuzz::SkinFile *document = FindFile(m_Files, row.document);
        ASSERT_NE(nullptr, document);
        std::string text(document->data.begin(), document->data.end());
        for (const Edit &edit : row.edits) {
            if (edit.from != nullptr) {
                text = Replaced(text, edit.from, edit.to);
            }
        }
        document->data.assign(text.begin(), text.end());
        package = mirlfuzz::PlainPackage(mirlfuzz::CorpusSkin{row.skin, m_Files});
    }
    RunResult result = LintPackage(package, row.rule);
    ASSERT_TRUE(result.finished);
    EXPECT_TRUE(Mentions(result, row.rule)) << Narrow(result.outText);
    // Whatever else the broken skin sets off is a rule of the list.
    for (const std::wstring &rule : RulesOf(result)) {
        const std::vector<std::wstring> &rules = mirllint::RuleNames();
        EXPECT_NE(rules.end(), std::find(rules.begin(), rules.end(), rule)) << Narrow(rule);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryRule, MirlLintNearMiss, testing::ValuesIn(kNearMisses), RowName);
