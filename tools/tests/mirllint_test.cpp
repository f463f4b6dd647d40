// mirllint as a skin author runs it: one skin per kind of mistake, with every line of the
// report and the exit code pinned down; and the pure rules it is built on.
#include "MirlToolRunner.h"

#include "MirlLintReport.h"
#include "MirlLintRules.h"
#include "MirlLintSkin.h"
#include "MirlToolSupport.h"

#include <gtest/gtest.h>

#include <iterator>

using mirltooltest::RunResult;
using mirltooltest::RunTool;
using mirltooltest::Skin;

namespace {

// The findings of a report: its lines up to the blank line before the coverage table.
std::vector<std::wstring> Findings(const RunResult &result)
{
    std::vector<std::wstring> findings;
    for (const std::wstring &line : result.out) {
        if (line.empty()) {
            break;
        }
        findings.push_back(line);
    }
    return findings;
}

template <size_t N>
void ExpectReport(const wchar_t *skin, const wchar_t *const (&expected)[N], DWORD exitCode, const std::wstring &options = L"")
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(skin)) + options);
    ASSERT_TRUE(result.finished) << skin;
    EXPECT_EQ(exitCode, result.exitCode) << skin;
    std::vector<std::wstring> findings = Findings(result);
    size_t count = std::max(findings.size(), N);
    for (size_t i = 0; i < count; ++i) {
        std::wstring want = i < N ? expected[i] : L"(nothing)";
        std::wstring got = i < findings.size() ? findings[i] : L"(nothing)";
        EXPECT_EQ(want, got) << skin << ", line " << i + 1;
    }
}

const wchar_t *const kLintStructure[] = {
    LR"L(Parts.xml: error: /Skin/Include: including 'skin.xml' closes a cycle (Skin.xml -> Parts.xml -> skin.xml): the library refuses this include [include-cycle])L",
    LR"L(Skin.xml: warning: /Skin/Include[2]: 'Parts.xml' is read a second time: its definitions repeat the ones read before and never win [include-repeated])L",
    LR"L(Parts.xml: error: /Skin/Include: including 'skin.xml' closes a cycle (Skin.xml -> Parts.xml -> skin.xml): the library refuses this include [include-cycle])L",
    LR"L(Skin.xml: error: /Skin/Include[3]: an Include without "File" includes nothing [include-missing])L",
    LR"L(Skin.xml: error: /Skin/Include[4]: 'file' is never read: attribute names are case-sensitive; did you mean 'File'? [attribute-case])L",
    LR"L(Skin.xml: error: /Skin/Include[4]: an Include without "File" includes nothing [include-missing])L",
    LR"L(Skin.xml: error: /Skin/Include[5]: 'Gone.xml' is not in the package: the include reads nothing [include-missing])L",
    LR"L(Broken.xml: error: the document is not well formed: it contributes nothing [not-well-formed])L",
    LR"L(Rootless.xml: error: /skin: the root element is 'skin', not 'Skin': the document contributes nothing (names are case-sensitive) [root-not-skin])L",
    LR"L(Skin.xml: error: /Skin/colors: the section 'colors' is never read: section names are case-sensitive; did you mean 'Colors'? [section-case])L",
    LR"L(Skin.xml: warning: /Skin/Colours: 'Colours' is not a section: its elements are ignored; did you mean 'Colors'? [unknown-section])L",
    LR"L(Skin.xml: warning: /Skin/Text: 'Language' is ignored: a section takes no attributes [unknown-attribute])L",
    LR"L(Skin.xml: error: /Skin/Text/language: 'language' is read as an element of that name, not as a language block: did you mean 'Language'? [section-case])L",
    LR"L(Skin.xml: warning: /Skin/Text/language: 'Id' is not an attribute of a text element: it is ignored [unknown-attribute])L",
    LR"L(Skin.xml: error: /Skin/Text/Include: an Include inside a section is not followed: it is read as an element named 'Include'; includes stand directly under Skin [include-misplaced])L",
    LR"L(Skin.xml: warning: /Skin/Text/Include: 'File' is not an attribute of a text element: it is ignored [unknown-attribute])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language[@Id='1031']: 'Name' is ignored: a Language block takes only "Id" [unknown-attribute])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language[@Id='1031']/TxtHallo: language 1031 has 1 of the 3 texts of 1033; these show in English: language, Include [text-coverage])L",
};

const wchar_t *const kLintAbort[] = {
    LR"L(Skin.xml: error: /Skin/Text/Language[@Id='2052']/comment(): the library stopped loading the skin here with HRESULT 0x80004003: it read 2 of the 6 definitions, and the rest of the skin is missing [loader-error])L",
    LR"L(Skin.xml: error: /Skin/Text/Language[@Id='2052']/comment(): a comment directly inside a Language block is read as an element without attributes: the library stops loading the skin here (HRESULT 0x80004003); put comments outside the block [comment-in-language])L",
    LR"L(Skin.xml: error: /Skin/Text/text(): text inside a section is read as an element without attributes: the library stops loading the skin here (HRESULT 0x80004003) [text-in-section])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/text(): text inside a template is read as an element without attributes: the library stops loading the skin here (HRESULT 0x80004003) [text-in-section])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language[@Id='2052']/TxtFirst: language 2052 has 1 of the 2 texts of 1033; these show in English: TxtLast [text-coverage])L",
};

const wchar_t *const kLintValues[] = {
    LR"L(Skin.xml: error: /Skin/Infoes: the library stopped loading the skin here with HRESULT 0x80020005: it read 1 of the 9 definitions, and the rest of the skin is missing [loader-error])L",
    LR"L(Skin.xml: warning: /Skin/Infoes: 'Licence' is not an attribute of an information element: it is ignored [unknown-attribute])L",
    LR"L(Skin.xml: error: /Skin/Infoes: Language="abc" is not a number of 0 or more; the library stops loading the skin here (HRESULT 0x80020005) [unconvertible-value])L",
    LR"L(Skin.xml: error: /Skin/Colors/ClrBad: Green="300" is not a number from 0 to 255; the library stops loading the skin here (HRESULT 0x8002000A) [unconvertible-value])L",
    LR"L(Skin.xml: error: /Skin/Colors/ClrBad: Alpha="-1" is not a number from 0 to 255; the library stops loading the skin here (HRESULT 0x8002000A) [unconvertible-value])L",
    LR"L(Skin.xml: error: /Skin/Colors/ClrCase: 'red' is never read: attribute names of elements are case-sensitive; did you mean 'Red'? [attribute-case])L",
    LR"L(Skin.xml: warning: /Skin/Colors/ClrCase: 'Colour' is not an attribute of a colour element: it is ignored [unknown-attribute])L",
    LR"L(Skin.xml: error: /Skin/Fonts/FontNegative: Height="-12" is negative: it must be a number of 0 or more; the library stops loading the skin here (HRESULT 0x8002000A) [unconvertible-value])L",
    LR"L(Skin.xml: error: /Skin/Fonts/FontNegative: Italic="yes" is not a boolean (true or false); the library stops loading the skin here (HRESULT 0x80020005) [unconvertible-value])L",
    LR"L(Skin.xml: warning: /Skin/Fonts/FontLong: FamilyName is 51 characters long: a face name holds 31 [font-family-too-long])L",
    LR"L(Skin.xml: error: /Skin/Text/Language[@Id='0x0804']: Id="0x0804" is hexadecimal, which the loader can't read: write the decimal 2052; the library stops loading the skin here (HRESULT 0x80020005) [unconvertible-value])L",
    LR"L(Skin.xml: error: /Skin/Text/Language: 'id' is never read, so the block is language 1033: attribute names are case-sensitive; did you mean 'Id'? [attribute-case])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language/TxtEnglish: the text 'TxtEnglish' of language 1033 is defined again: the first definition (Skin.xml /Skin/Text/TxtEnglish) always wins, so this one is never used [shadowed-definition])L",
};

const wchar_t *const kLintTemplates[] = {
    LR"L(Skin.xml: error: /Skin/Windows/Frame: Style word 'ws_border' matches nothing and adds no bits (words are case-sensitive); did you mean 'WS_BORDER'? [style-word])L",
    LR"L(Skin.xml: warning: /Skin/Windows/Frame: 'Caption' is read by no window: it is ignored; did you mean 'Text'? [unknown-attribute])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Single: the template has 1 attribute where at least two are needed: it is dropped with its 2 descendants [template-too-few-attributes])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/NoClass: the template has no "Class": it makes no window [template-no-class])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Typo: Class="Buton" is not a window class: it makes no window; did you mean 'BUTTON'? [unknown-class])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Strange: Class="Gadget" is not a window class: it makes no window [unknown-class])L",
    LR"L(Skin.xml: warning: /Skin/Windows/Frame/List: Class="LISTBOX" makes no window: the library has no list box [class-listbox])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Tab: Class="TABBUTTON" makes a tab only inside a TOOLBAR: here it makes no window [unknown-class])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/twin: a sibling named 'Twin' comes first (/Skin/Windows/Frame/Twin): windows are found by name, so this one reads that template's attributes [duplicate-sibling])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Words: Style word 'WS_CHLD' matches nothing and adds no bits; did you mean 'WS_CHILD'? [style-word])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Words: ExStyle word 'WS_EX_CLIENT_EDGE' matches nothing and adds no bits; did you mean 'WS_EX_CLIENTEDGE'? [style-word])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Words: Align word 'ALIGN_LEFT' matches nothing and adds no bits: it is a word of "Layout" [position-word])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Label: Layout word 'ALIGN_PARENT_LEFT' matches nothing and adds no bits: it is a word of "Align" [layout-word])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Label: Layout word 'align_top' matches nothing and adds no bits (words are case-sensitive); did you mean 'ALIGN_TOP'? [layout-word])L",
    LR"L(Skin.xml: warning: /Skin/Windows/Frame/Floating: Style="WS_POPUP|WS_VISIBLE" has no WS_CHILD: "Style" replaces the default WS_CHILD|WS_VISIBLE, so this window is made as a window of its own outside its parent [style-not-child])L",
    LR"L(Skin.xml: warning: /Skin/Windows/Frame/Numbers: Width="12px" is not a number as written: it reads as 12 [template-number])L",
    LR"L(Skin.xml: warning: /Skin/Windows/Frame/Numbers: Height="" is not a number as written: it reads as 0 [template-number])L",
    LR"L(Skin.xml: warning: /Skin/Windows/Frame/Numbers: X="0x1G" is not a number as written: it reads as 16 [template-number])L",
    LR"L(Skin.xml: warning: /Skin/Windows/Frame/Numbers: Transparent="yes" reads as false: only "true", in any letter case, is true [template-boolean])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Bar: Pic="ImgBar" names no image element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Bar: every TOOLBAR draws the image elements BarLeft, BarRight, BarXScale, TabbarButtonActive, TabbarButtonMenuSelected, TabbarButtonMouseOn, TabbarArrow by their fixed names, and the skin lacks BarLeft, BarRight, BarXScale, TabbarButtonActive, TabbarButtonMenuSelected, TabbarButtonMouseOn, TabbarArrow (reported once, at the first such template) [control-image-missing])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Combo: Pic is absent, and its default 'CmBtn1' names no image element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Combo: PicArrow is absent, and its default 'CmBtnArrow' names no image element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Combo: PicC is absent, and its default 'CmBtn2' names no image element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Combo: PicD is absent, and its default 'CmBtn3' names no image element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Combo: PicS is absent, and its default 'CmBtn0' names no image element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Combo/LIST: the template has 0 attributes where at least two are needed: it is dropped with its 1 descendant [template-too-few-attributes])L",
    LR"L(Skin.xml: error: /Skin/Windows/Bare: the template has 1 attribute where at least two are needed: it is kept without attributes or children, and a window made from it has only defaults [template-too-few-attributes])L",
};

const wchar_t *const kLintReferences[] = {
    LR"L(Skin.xml: warning: /Skin/Colors/ClrPanel[2]: the colour 'ClrPanel' of language 1033 is defined again: the first definition (Skin.xml /Skin/Colors/ClrPanel) always wins, so this one is never used [shadowed-definition])L",
    LR"L(Skin.xml: error: /Skin/Images/ImgFace: KeyColorLow="ClrKey" names no colour element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Images/ImgGone: File="Images/Gone.png" is not in the package [image-file-missing])L",
    LR"L(Skin.xml: error: /Skin/Images/ImgFake: File="Images/Fake.png" is not a picture that GDI+ can read [image-unreadable])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language[@Id='2052']/TxtOnlyHere: the text 'TxtOnlyHere' exists in language 2052 but not in 1033: every other language finds nothing [text-no-fallback])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language[@Id='1031']/TxtPlay[2]: the text 'TxtPlay' of language 1031 is defined again: the first definition (Skin.xml /Skin/Text/Language[@Id='1031']/TxtPlay) always wins, so this one is never used [shadowed-definition])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame: Font="FontMissing" names no font element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Play: the BUTTON has no "CommandID": it is never drawn, because its parent takes an owner-draw notification with identifier 0 for a menu's; give it an identifier of its own [button-no-command-id])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Play: Text="txtplay" names no text element; did you mean 'TxtPlay'? (names of elements are case-sensitive) [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Play: ToolTip="ClrPanel" names no text element; 'ClrPanel' is a colour [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Play: Url="TxtHome" opens 'file:///C:/Windows/System32/calc.exe' (language 2052): only http, https and mailto targets are safe, anything else is started by the shell [url-scheme])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Play: PicC="ImgFac" names no image element; did you mean 'ImgFace'? [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Stop: the BUTTON has no "CommandID": it is never drawn, because its parent takes an owner-draw notification with identifier 0 for a menu's; give it an identifier of its own [button-no-command-id])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Stop: Text="TxtOnlyHere" names no text element in language 1031, 1033 (it is defined only in 2052, and 1033 has none to fall back on) [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Stop: Url="TxtRun" opens 'calc.exe' (language 1031, 1033, 2052): only http, https and mailto targets are safe, anything else is started by the shell [url-scheme])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Stop: a BUTTON with BS_BACKIMGE draws the image elements CmBtn0, CmBtn1, CmBtn2, CmBtn3 by their fixed names, and the skin lacks CmBtn0, CmBtn1, CmBtn2, CmBtn3 (reported once, at the first such template) [control-image-missing])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Scroll: every SCROLLBAR draws the image elements NormalTop, HoverTop, ClickTop, NormalBottom, HoverBottom, ClickBottom, YRepeateNormal, YRepeateHover and 11 more by their fixed names, and the skin lacks HoverTop, ClickTop, NormalBottom, HoverBottom, ClickBottom, YRepeateNormal, YRepeateHover, YRepeateClick, TopNormal, TopHover, TopPressed, GripNormal, GripHover, GripClick, BottomNormal, BottomHover, BottomClick, YRepeat (reported once, at the first such template) [control-image-missing])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Slide: Pic is absent, and its default 'SliderTrack' names no image element [missing-element])L",
    LR"L(Skin.xml: error: /Skin/Windows/Frame/Slide: PicBkBorder is absent, and its default 'SliderBkBorder' names no image element [missing-element])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language[@Id='1031']/TxtPlay: language 1031 has 1 of the 4 texts of 1033; these show in English: TxtStop, TxtHome, TxtRun [text-coverage])L",
    LR"L(Skin.xml: warning: /Skin/Text/Language[@Id='2052']/TxtPlay: language 2052 has 2 of the 4 texts of 1033; these show in English: TxtStop, TxtRun [text-coverage])L",
};

} // namespace

TEST(MirlLint, CleanSkinHasNoFindingsAndExitsZero)
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_clean")));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    std::vector<std::wstring> expected = {L"", L"text coverage against language 1033 (3 texts):",
                                          L"  language  present  missing", L"  2052      3        0"};
    EXPECT_EQ(expected, result.out);
    ASSERT_EQ(1u, result.err.size());
    EXPECT_EQ(L"mirllint: 0 errors, 0 warnings", result.err[0]);
}

const wchar_t *const kLintEditColours[] = {
    LR"L(Skin.xml: warning: /Skin/Windows/Edits/Single: every EDIT takes the colour elements EditSel, Black, EditBorder (selection, selected text, border) by their fixed names, and the skin lacks EditSel, Black, EditBorder: each missing one takes the colour before it, from 0xFF808080, so selected text can vanish into its background (reported once, at the first such template) [control-color-missing])L",
};

TEST(MirlLint, AnEditWithoutItsFixedColoursIsWarnedOfOnce)
{
    ExpectReport(L"edits_bare", kLintEditColours, 0);
}

TEST(MirlLint, AnEditWithItsFixedColoursIsClean)
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"edits")));
    ASSERT_TRUE(result.finished);
    for (const std::wstring &finding : Findings(result)) {
        EXPECT_EQ(std::wstring::npos, finding.find(L"control-color-missing")) << finding;
    }
}

TEST(MirlLint, SampleSkinIsClean)
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"sample")));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    std::vector<std::wstring> expected = {L"", L"text coverage against language 1033 (75 texts):",
                                          L"  language  present  missing", L"  2052      75       0"};
    EXPECT_EQ(expected, result.out);
    ASSERT_EQ(1u, result.err.size());
    EXPECT_EQ(L"mirllint: 0 errors, 0 warnings", result.err[0]);
}

TEST(MirlLint, IncludesSectionsAndDocumentsThatTheLoaderSkips)
{
    ExpectReport(L"lint_structure", kLintStructure, 1);
}

TEST(MirlLint, CommentsAndTextThatStopTheLoaderAreReportedWithItsVerdict)
{
    ExpectReport(L"lint_abort", kLintAbort, 1);
}

TEST(MirlLint, ValuesTheLoaderCannotConvertEachGetALine)
{
    ExpectReport(L"lint_values", kLintValues, 1);
}

TEST(MirlLint, TemplatesThatAreDroppedMisnamedOrMisspelled)
{
    ExpectReport(L"lint_templates", kLintTemplates, 1);
}

TEST(MirlLint, ReferencesImagesLinksAndTextCoverage)
{
    ExpectReport(L"lint_references", kLintReferences, 1);
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_references")));
    std::vector<std::wstring> table(std::find(result.out.begin(), result.out.end(), L""), result.out.end());
    std::vector<std::wstring> expected = {L"", L"text coverage against language 1033 (4 texts):",
                                          L"  language  present  missing", L"  1031      1        3",
                                          L"  2052      2        2"};
    EXPECT_EQ(expected, table);
}

// Every fixed image a range control draws and the skin lacks is named, once per class.
TEST(MirlLint, RangeControlsNameEachFixedImageTheSkinLacks)
{
    static const wchar_t *const kLintRange[] = {
        LR"L(Skin.xml: error: /Skin/Windows/Frame/Bar: every SCROLLBAR draws the image elements NormalTop, HoverTop, ClickTop, NormalBottom, HoverBottom, ClickBottom, YRepeateNormal, YRepeateHover and 11 more by their fixed names, and the skin lacks GripClick (reported once, at the first such template) [control-image-missing])L",
        LR"L(Skin.xml: error: /Skin/Windows/Frame/Seek: every SEEK draws the image elements ProgressBk, ProgressFill, ProgressTrack, ProgressTrackGlow, ProgressTrackDown by their fixed names, and the skin lacks ProgressTrackGlow, ProgressTrackDown (reported once, at the first such template) [control-image-missing])L",
    };
    ExpectReport(L"lint_range", kLintRange, 1);
}

// Tab strips whose children are not all tabs, and folder stacks that are empty or whose folders
// have children (made twice: a bar is made from its folder's template) or no identifier.
TEST(MirlLint, TabStripsAndFolderStacksThatAreNotWhatTheyLookLike)
{
    static const wchar_t *const kLintContainers[] = {
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/StripNoTab: the TOOLBAR has no TABBUTTON child: it shows its strip with no tab, and no tab is ever current [toolbar-no-tab])L",
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/StripNoTab/Caption: a TOOLBAR makes windows for its TABBUTTON children only: 'Caption' makes none [toolbar-child-not-tab])L",
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/StripCaptionFirst/Caption: a TOOLBAR makes windows for its TABBUTTON children only: 'Caption' makes none, and as it comes before the first tab, the toolbar makes the tab 'TabB' current instead of 'TabA' [toolbar-child-not-tab])L",
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/StripOneTab/Caption: a TOOLBAR makes windows for its TABBUTTON children only: 'Caption' makes none, and as it comes before the first tab, the toolbar makes no tab current [toolbar-child-not-tab])L",
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/StackEmpty: the OUTLOOK has no folder: it shows an empty stack, and no bar is ever current [outlook-no-folder])L",
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/Stack/Playlists: the folder's 2 children are made twice: in its panel and on its bar, which is made from the same template [outlook-folder-children])L",
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/Stack/Playlists: the folder has no "CommandID": its bar gets identifier 500 and its panel 0, as every folder without one does [outlook-folder-no-command-id])L",
        LR"L(Skin.xml: warning: /Skin/Windows/Frame/Stack/Artists: the folder's "CommandID" is 0: its bar gets identifier 500 and its panel 0, as every folder without one does [outlook-folder-no-command-id])L",
    };
    ExpectReport(L"lint_containers", kLintContainers, 0);
}

TEST(MirlLint, LangLimitsTheLanguagesChecked)
{
    RunResult result =
        RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_references")) + L" --lang 2052");
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(1u, result.exitCode);
    std::vector<std::wstring> findings = Findings(result);
    // The text that only 2052 has resolves when 2052 is the language, and the coverage line
    // names 2052 alone.
    for (const std::wstring &line : findings) {
        EXPECT_EQ(std::wstring::npos, line.find(L"TxtOnlyHere\" names")) << line;
        EXPECT_EQ(std::wstring::npos, line.find(L"language 1031 has")) << line;
    }
    EXPECT_NE(findings.end(), std::find(findings.begin(), findings.end(),
                                        LR"L(Skin.xml: error: /Skin/Windows/Frame/Stop: Url="TxtRun" opens 'calc.exe' (language 2052): only http, https and mailto targets are safe, anything else is started by the shell [url-scheme])L"));
    EXPECT_EQ(L"  2052      2        2", result.out.back());
}

TEST(MirlLint, JsonCarriesTheSameFindings)
{
    RunResult text = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_values")));
    RunResult json = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_values")) + L" --json");
    ASSERT_TRUE(json.finished);
    EXPECT_EQ(text.exitCode, json.exitCode);
    EXPECT_EQ(L"{", json.out.front());
    EXPECT_EQ(L"  \"package\": \"lint_values.zip\",", json.out[1]);
    EXPECT_NE(std::wstring::npos,
              json.outText.find(LR"L({"file": "Skin.xml", "severity": "error", "path": "/Skin/Colors/ClrBad", "message": "Green=\"300\" is not a number from 0 to 255; the library stops loading the skin here (HRESULT 0x8002000A)", "rule": "unconvertible-value"})L"));
    EXPECT_NE(std::wstring::npos, json.outText.find(L"\"errors\": 9,"));
    EXPECT_NE(std::wstring::npos, json.outText.find(L"\"warnings\": 4"));
    EXPECT_NE(std::wstring::npos,
              json.outText.find(L"\"coverage\": {\"base\": 1033, \"texts\": 1, \"languages\": [{\"language\": 2052, \"present\": 1, \"missing\": []}]}"));
    size_t findings = 0;
    for (size_t at = json.outText.find(L"\"rule\": "); at != std::wstring::npos; at = json.outText.find(L"\"rule\": ", at + 1)) {
        ++findings;
    }
    EXPECT_EQ(Findings(text).size(), findings);
}

TEST(MirlLint, TemplatesDeeperThanTheLoaderReadsAreWarnedAbout)
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"deep_templates")));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    ASSERT_FALSE(result.out.empty());
    const std::wstring &last = result.out.back();
    EXPECT_EQ(0u, last.find(L"Skin.xml: warning: /Skin/Windows/Level1/Level2/"));
    EXPECT_NE(std::wstring::npos, last.find(L"/Level64: the template's 16 descendants lie deeper than the library reads "
                                            L"templates: they are left out [template-too-deep]"));
}

TEST(MirlLint, IncludesPastTheLibrarysDocumentLimitAreNotFollowed)
{
    // Loop.xml includes itself 1,100 times. With Skin.xml and Loop.xml, the first 1,022 of those
    // reach the limit of 1,024 includes: the rest, and Skin.xml's two later includes of
    // Loop.xml, are left out as the library leaves them out.
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"many_cyclic_includes")));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(1u, result.exitCode);
    size_t cycles = 0;
    size_t repeats = 0;
    std::vector<std::wstring> limits;
    for (const std::wstring &line : Findings(result)) {
        cycles += line.find(L"[include-cycle]") != std::wstring::npos ? 1 : 0;
        repeats += line.find(L"[include-repeated]") != std::wstring::npos ? 1 : 0;
        if (line.find(L"[include-limit]") != std::wstring::npos) {
            limits.push_back(line);
        }
    }
    EXPECT_EQ(static_cast<size_t>(MirlUI::MaxDocuments) - 2, cycles);
    EXPECT_EQ(0u, repeats);
    // The first include left out is reported, once.
    ASSERT_EQ(1u, limits.size());
    EXPECT_EQ(L"Loop.xml: error: /Skin/Include[1023]: the library follows no include past the 1024th it meets: "
              L"this include of 'Loop.xml' and every one after it read nothing [include-limit]",
              limits[0]);
}

TEST(MirlLint, DocumentsPastTheLibrarysByteLimitAreNotRead)
{
    // Skin.xml (26,015 bytes) includes Big.xml (857,810 bytes) 1,000 times. The library reads
    // documents until 8 MiB have been read: Big.xml ten times, nine of them repeats.
    const std::wstring package = mirltooltest::BinDir() + L"\\fuzz-regressions\\hang-thousand-includes-of-a-large-document.zip";
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(package));
    ASSERT_TRUE(result.finished);
    size_t repeats = 0;
    std::vector<std::wstring> limits;
    for (const std::wstring &line : Findings(result)) {
        repeats += line.find(L"[include-repeated]") != std::wstring::npos ? 1 : 0;
        if (line.find(L"[document-size-limit]") != std::wstring::npos) {
            limits.push_back(line);
        }
    }
    EXPECT_EQ(9u, repeats);
    // 26,015 + 10 x 857,810 bytes have been read when the eleventh include is met.
    ASSERT_EQ(1u, limits.size());
    EXPECT_EQ(L"Skin.xml: error: /Skin/Include[11]: the library reads no document once 8 MiB of documents have been "
              L"read for the skin (8604115 bytes so far): 'Big.xml' and every document after it are not read "
              L"[document-size-limit]",
              limits[0]);
}

// A skin folder is read as the package the build makes of it: the same report, line for line.
TEST(MirlLint, AFolderIsCheckedAsItsPackage)
{
    RunResult zipped = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_references")));
    RunResult folder = RunTool(L"mirllint.exe", mirltooltest::Quote(mirltooltest::BinDir() + L"\\fuzz-corpus\\lint_references"));
    ASSERT_TRUE(folder.finished);
    EXPECT_EQ(1u, folder.exitCode);
    EXPECT_EQ(zipped.exitCode, folder.exitCode);
    EXPECT_GT(zipped.out.size(), 10u);
    EXPECT_EQ(zipped.out, folder.out);
    EXPECT_EQ(zipped.err, folder.err);
}

TEST(MirlLint, APackageThatCannotBeOpenedIsAnError)
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"no_such_skin")));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(1u, result.exitCode);
    ASSERT_EQ(1u, result.out.size());
    EXPECT_EQ(0u, result.out[0].find(L"no_such_skin.zip: error: the library could not open the package: MirlException code 1: "));
    EXPECT_NE(std::wstring::npos, result.out[0].find(L"[package-unreadable]"));
}

TEST(MirlLint, UsageMistakesExitWithTwo)
{
    EXPECT_EQ(2u, RunTool(L"mirllint.exe", L"").exitCode);
    EXPECT_EQ(2u, RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_clean")) + L" --colour").exitCode);
    EXPECT_EQ(2u, RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_clean")) + L" --lang 0x409").exitCode);
    EXPECT_EQ(2u, RunTool(L"mirllint.exe", L"a.zip b.zip").exitCode);
}

// ---- Reading the package ----

TEST(MirlLintSkin, DocumentsAreParsedFromWhatTheirEntryHoldsNotFromWhatItsDirectoryDeclares)
{
    // A document of 48 bytes whose records declare 64 MiB: the rest of the block is zeros,
    // which MSXML took about half a minute to crawl through.
    const std::wstring package = mirltooltest::BinDir() + L"\\fuzz-regressions\\hang-declared-64mib-document.zip";
    mirltool::LibraryStart start = mirltool::StartLibrary(package.c_str(), 1033);
    ASSERT_TRUE(start.loaded);
    IStreamPtr document = MirlUI::Instance()->ExtractDocument(L"Skin.xml");
    IStreamPtr entry = MirlUI::Instance()->ExtractFile(L"Skin.xml");
    STATSTG documentStat = {};
    STATSTG entryStat = {};
    ASSERT_NE(nullptr, document);
    ASSERT_NE(nullptr, entry);
    document->Stat(&documentStat, STATFLAG_NONAME);
    entry->Stat(&entryStat, STATFLAG_NONAME);
    EXPECT_EQ(48u, documentStat.cbSize.QuadPart);
    EXPECT_EQ(64u * 1024 * 1024, entryStat.cbSize.QuadPart);
    EXPECT_EQ(nullptr, MirlUI::Instance()->ExtractDocument(L"Gone.xml"));
    document = nullptr;
    entry = nullptr;
    MirlUnIntialize();
}

// ---- The rules, without a skin ----

TEST(MirlLintRules, StyleWordsInTheWrongCaseNameTheRightWord)
{
    std::vector<mirllint::WordProblem> problems = mirllint::CheckWords(L" WS_CHILD | ws_visible||WS_TABSTOP ", mirllint::WordTable::Style);
    ASSERT_EQ(1u, problems.size());
    EXPECT_EQ(L"ws_visible", problems[0].word);
    EXPECT_EQ(L"WS_VISIBLE", problems[0].suggestion);
    EXPECT_EQ(L"Style word 'ws_visible' matches nothing and adds no bits (words are case-sensitive); did you mean 'WS_VISIBLE'?",
              mirllint::DescribeWordProblem(problems[0], mirllint::WordTable::Style));
}

TEST(MirlLintRules, WordsOfAnotherAttributeAreNamedAsSuch)
{
    std::vector<mirllint::WordProblem> problems = mirllint::CheckWords(L"ALIGN_TOP|ALIGN_NONE", mirllint::WordTable::Align);
    ASSERT_EQ(1u, problems.size());
    EXPECT_EQ(L"Layout", problems[0].belongsTo);
    EXPECT_TRUE(mirllint::CheckWords(L"", mirllint::WordTable::Layout).empty());
    EXPECT_TRUE(mirllint::CheckWords(L"|", mirllint::WordTable::ExStyle).empty());
    EXPECT_EQ(0x50000000UL, mirllint::WordValue(L"WS_CHILD|ws_border|WS_VISIBLE", mirllint::WordTable::Style));
}

TEST(MirlLintRules, ValuesConvertAsTheLoaderConvertsThem)
{
    mirllint::ValueProblem problem;
    EXPECT_TRUE(mirllint::ConvertsAs(L"255", mirllint::Conversion::Byte, problem));
    EXPECT_FALSE(mirllint::ConvertsAs(L"256", mirllint::Conversion::Byte, problem));
    EXPECT_EQ(0x8002000AUL, problem.hresult);
    EXPECT_FALSE(mirllint::ConvertsAs(L"0x0409", mirllint::Conversion::Int, problem));
    EXPECT_EQ(0x80020005UL, problem.hresult);
    EXPECT_FALSE(mirllint::ConvertsAs(L"-5", mirllint::Conversion::UInt, problem));
    EXPECT_TRUE(mirllint::ConvertsAs(L"true", mirllint::Conversion::Bool, problem));
    EXPECT_TRUE(mirllint::ConvertsAs(L"anything", mirllint::Conversion::String, problem));
    unsigned long value = 0;
    EXPECT_TRUE(mirllint::ReadHexadecimal(L"0x0409", value));
    EXPECT_EQ(1033UL, value);
    EXPECT_FALSE(mirllint::ReadHexadecimal(L"1033", value));
}

TEST(MirlLintRules, NumbersAsWrittenInTemplates)
{
    EXPECT_TRUE(mirllint::IsWellFormedInteger(L"-3"));
    EXPECT_TRUE(mirllint::IsWellFormedInteger(L"0x000A0005"));
    EXPECT_FALSE(mirllint::IsWellFormedInteger(L"12px"));
    EXPECT_FALSE(mirllint::IsWellFormedInteger(L""));
    EXPECT_FALSE(mirllint::IsWellFormedInteger(L"7x10"));
    EXPECT_FALSE(mirllint::IsWellFormedInteger(L"0xAgB"));
}

TEST(MirlLintRules, OnlyWebAndMailLinksAreSafe)
{
    EXPECT_TRUE(mirllint::IsSafeUrl(L"https://example.org"));
    EXPECT_TRUE(mirllint::IsSafeUrl(L"HTTP://example.org"));
    EXPECT_TRUE(mirllint::IsSafeUrl(L"mailto:someone@example.org"));
    EXPECT_FALSE(mirllint::IsSafeUrl(L"http://"));
    EXPECT_FALSE(mirllint::IsSafeUrl(L"file:///C:/Windows/notepad.exe"));
    EXPECT_FALSE(mirllint::IsSafeUrl(L"calc.exe"));
    EXPECT_FALSE(mirllint::IsSafeUrl(L" https://example.org"));
}

TEST(MirlLintRules, NamesAFewLettersAwayAreSuggested)
{
    EXPECT_EQ(1u, mirllint::EditDistance(L"Buton", L"BUTTON"));
    EXPECT_EQ(L"BUTTON", mirllint::SimilarClass(L"Buton"));
    EXPECT_EQ(L"", mirllint::SimilarClass(L"Gadget"));
    EXPECT_EQ(L"Colors", mirllint::SimilarSection(L"Colours"));
    EXPECT_TRUE(mirllint::IsKnownClass(L"customcontrol"));
    std::wstring meant;
    EXPECT_FALSE(mirllint::IsTemplateAttribute(L"Caption", meant));
    EXPECT_EQ(L"Text", meant);
    EXPECT_TRUE(mirllint::IsTemplateAttribute(L"clbkground", meant));
}

TEST(MirlLintReport, LinesAndOrder)
{
    mirllint::Report report;
    report.Add(mirllint::Severity::Warning, mirllint::Location{L"B.xml", L"/Skin/Text/T", 9}, L"later", L"rule-b");
    report.Add(mirllint::Severity::Error, mirllint::Location{L"Skin.xml", L"", 0}, L"skin-wide", L"rule-c", 2);
    report.Add(mirllint::Severity::Error, mirllint::Location{L"A.xml", L"/Skin/Colors/C", 3}, L"earlier", L"rule-a");
    report.Add(mirllint::Severity::Error, mirllint::Location{L"Skin.xml", L"/Skin", 5}, L"verdict", L"rule-0", 0);
    report.Sort();
    EXPECT_EQ(L"Skin.xml: error: /Skin: verdict [rule-0]\n"
              L"A.xml: error: /Skin/Colors/C: earlier [rule-a]\n"
              L"B.xml: warning: /Skin/Text/T: later [rule-b]\n"
              L"Skin.xml: error: skin-wide [rule-c]\n",
              report.Text());
    EXPECT_EQ(3u, report.Errors());
    EXPECT_EQ(1u, report.Warnings());
}

namespace {

std::string NarrowText(const std::wstring &text)
{
    std::string narrow;
    for (wchar_t c : text) {
        narrow += c < 0x80 ? static_cast<char>(c) : '?';
    }
    return narrow;
}

} // namespace

TEST(MirlLintRules, RangeControlsAndTheSplitterAreKnownClassesWithTheirFixedImages)
{
    for (const wchar_t *name : {L"PROGRESS", L"TRACKBAR", L"INCHINGSWITCH", L"SPLITTER", L"InchingSwitch"}) {
        EXPECT_TRUE(mirllint::IsKnownClass(name)) << NarrowText(name);
    }
    const std::vector<std::wstring> progress = {L"PGBL", L"PGBX", L"PGBR", L"PGFL", L"PGFX", L"PGFR"};
    EXPECT_EQ(progress, mirllint::FixedImages(L"PROGRESS", 0));
    const std::vector<std::wstring> track = {L"TrackBarThumb", L"TrackBarThumbGlow", L"ProgressFill"};
    EXPECT_EQ(track, mirllint::FixedImages(L"trackbar", 0));
    const std::vector<std::wstring> wheel = mirllint::FixedImages(L"INCHINGSWITCH", 0);
    ASSERT_EQ(49u, wheel.size());
    EXPECT_EQ(L"InchingSwitchMask", wheel[0]);
    for (int i = 0; i < 48; ++i) {
        EXPECT_EQ(L"InchingSwitch" + std::to_wstring(i), wheel[i + 1]);
    }
    // The splitter's only image is its own "Pic".
    EXPECT_TRUE(mirllint::FixedImages(L"SPLITTER", 0x3).empty());
}

TEST(MirlLint, AJogWheelWhoseSkinLacksFramesIsReported)
{
    const wchar_t *const expected[] = {
        LR"L(Skin.xml: error: /Skin/Windows/Ranges/Wheel: every INCHINGSWITCH draws the image elements InchingSwitchMask, InchingSwitch0, InchingSwitch1, InchingSwitch2, InchingSwitch3, InchingSwitch4, InchingSwitch5, InchingSwitch6 and 41 more by their fixed names, and the skin lacks InchingSwitch0, InchingSwitch1, InchingSwitch4, InchingSwitch6, InchingSwitch7, InchingSwitch8, InchingSwitch9, InchingSwitch10, InchingSwitch11, InchingSwitch12, InchingSwitch13, InchingSwitch14, InchingSwitch15, InchingSwitch16, InchingSwitch17, InchingSwitch18, InchingSwitch19, InchingSwitch20, InchingSwitch21, InchingSwitch22, InchingSwitch23, InchingSwitch24, InchingSwitch25, InchingSwitch26, InchingSwitch27, InchingSwitch28, InchingSwitch29, InchingSwitch30, InchingSwitch31, InchingSwitch32, InchingSwitch33, InchingSwitch34, InchingSwitch35, InchingSwitch36, InchingSwitch37, InchingSwitch38, InchingSwitch39, InchingSwitch40, InchingSwitch41, InchingSwitch42, InchingSwitch43, InchingSwitch44, InchingSwitch45, InchingSwitch46, InchingSwitch47 (reported once, at the first such template) [control-image-missing])L",
    };
    ExpectReport(L"ranges_partial", expected, 1);
}

TEST(MirlLint, TheRangeAndSplitterFixturesAreClean)
{
    for (const wchar_t *skin : {L"ranges", L"splitters"}) {
        RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(skin)));
        ASSERT_TRUE(result.finished);
        EXPECT_EQ(0u, result.exitCode) << NarrowText(skin);
        EXPECT_TRUE(Findings(result).empty()) << NarrowText(Findings(result).front());
    }
}

TEST(MirlLint, TheDialogAndNumberFieldSkinIsClean)
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"dialogs")));
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(0u, result.exitCode);
    ASSERT_FALSE(result.err.empty());
    EXPECT_EQ(L"mirllint: 0 errors, 0 warnings", result.err.back());
}

TEST(MirlLint, DialogImagesAndTheNumberFieldsFaceAreNamedWhenMissing)
{
    RunResult result = RunTool(L"mirllint.exe", mirltooltest::Quote(Skin(L"lint_dialog_images")));
    ASSERT_TRUE(result.finished);
    const std::vector<std::wstring> expected = {
        LR"L(Skin.xml: warning: /Skin/Images/CheckY: the image 'CheckY' is one that a skinned dialog's own controls draw; they also take CheckY, CheckN, RadioBtn0, RadioBtn1, CmBtn2, CmBtnArrow by their fixed names, and the skin lacks RadioBtn0, RadioBtn1, CmBtn2, CmBtnArrow (reported once) [dialog-image-missing])L",
        LR"L(Skin.xml: error: /Skin/Windows/Frame/Number: every COMMONEDIT draws the image elements CommonEditLeft, CommonEditRight, CommonEditXScale by their fixed names, and the skin lacks CommonEditLeft, CommonEditRight, CommonEditXScale (reported once, at the first such template) [control-image-missing])L",
    };
    std::vector<std::wstring> findings;
    for (const std::wstring &line : result.out) {
        if (line.find(L"Skin.xml:") == 0) {
            findings.push_back(line);
        }
    }
    EXPECT_EQ(expected, findings);
}

TEST(MirlLintRules, DialogControlsAndTheNumberFieldDrawFixedImages)
{
    const std::vector<std::wstring> dialog = {L"CheckY", L"CheckN", L"RadioBtn0", L"RadioBtn1", L"CmBtn2", L"CmBtnArrow"};
    EXPECT_EQ(dialog, mirllint::DialogControlImages());
    EXPECT_TRUE(mirllint::IsDialogOnlyImage(L"RadioBtn1"));
    EXPECT_FALSE(mirllint::IsDialogOnlyImage(L"checky")) << "element names compare case-sensitively";
    EXPECT_FALSE(mirllint::IsDialogOnlyImage(L"CmBtn2")) << "every skin button reads it";
    const std::vector<std::wstring> face = {L"CommonEditLeft", L"CommonEditRight", L"CommonEditXScale"};
    EXPECT_EQ(face, mirllint::FixedImages(L"commonedit", 0));
    EXPECT_TRUE(mirllint::FixedImages(L"SPIN", 0).empty());
    EXPECT_TRUE(mirllint::IsKnownClass(L"Spin"));
}
