#include "MirlTestSupport.h"

#include <gtest/gtest.h>

using mirltest::ProbeUI;
using mirltest::SkinPath;
using mirltest::TextOf;

namespace {

class SkinDocumentTest : public ::testing::Test {
protected:
    void LoadSkin(const wchar_t *name) { m_Ui.Load(SkinPath(name).c_str()); }

    HRESULT LoadError(const wchar_t *name)
    {
        try {
            LoadSkin(name);
        } catch (const _com_error &e) {
            return e.Error();
        }
        return S_OK;
    }

    MirlUiElementColor *Color(const wchar_t *name)
    {
        return static_cast<MirlUiElementColor *>(m_Ui.GetUiElement(name, UI_ELEMENT_COLOR, 1033));
    }

    mirltest::ComScope m_Com;
    ProbeUI m_Ui;
};

// The first element of that name in a list, by walking the list in document order.
MirlUiElement *FirstByWalking(MirlUI &ui, unsigned long type, unsigned int language, const wchar_t *name)
{
    for (unsigned int i = 0; i < ui.GetUiElementCount(type, language); ++i) {
        MirlUiElement *element = ui.GetUiElementByIndex(type, language, i);
        if (wcscmp(element->GetName(), name) == 0) {
            return element;
        }
    }
    return nullptr;
}

} // namespace

TEST_F(SkinDocumentTest, SectionsFillTheirLanguageMaps)
{
    LoadSkin(L"basic");
    EXPECT_NE(nullptr, Color(L"ClrRGBA"));
    EXPECT_NE(nullptr, m_Ui.GetUiElement(L"FontCaption", UI_ELEMENT_FONT, 1033));
    EXPECT_NE(nullptr, m_Ui.GetUiElement(L"BtnOk", UI_ELEMENT_IMAGE, 1033));
    EXPECT_STREQ(L"Open", TextOf(m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT, 1033)));
    EXPECT_NE(nullptr, m_Ui.GetUiElement(L"MainFrame", UI_ELEMENT_WINDOW, 1033));
    EXPECT_EQ(0x04030201UL, Color(L"ClrRGBA")->GetDWORD());
}

TEST_F(SkinDocumentTest, ElementsEnterListsInDocumentOrderWithIncludesInPlace)
{
    LoadSkin(L"basic");
    ASSERT_EQ(5u, m_Ui.Count(UI_ELEMENT_COLOR, 1033));
    EXPECT_STREQ(L"ClrBlack", m_Ui.At(UI_ELEMENT_COLOR, 1033, 0)->GetName());
    EXPECT_STREQ(L"ClrRGBA", m_Ui.At(UI_ELEMENT_COLOR, 1033, 1)->GetName());
    EXPECT_STREQ(L"ClrPanel", m_Ui.At(UI_ELEMENT_COLOR, 1033, 2)->GetName());
    EXPECT_STREQ(L"ClrFromInclude", m_Ui.At(UI_ELEMENT_COLOR, 1033, 3)->GetName());
    EXPECT_STREQ(L"ClrPanel", m_Ui.At(UI_ELEMENT_COLOR, 1033, 4)->GetName());
}

TEST_F(SkinDocumentTest, FirstDefinitionWinsAcrossIncludes)
{
    LoadSkin(L"basic");
    EXPECT_EQ(32, Color(L"ClrPanel")->R());
    MirlUiWindow *frame = m_Ui.GetUiElement(0x1000UL);
    ASSERT_NE(nullptr, frame);
    EXPECT_STREQ(L"MainFrame", frame->GetName());
}

TEST_F(SkinDocumentTest, IncludeIgnoresCaseButSectionsDoNot)
{
    LoadSkin(L"basic");
    // "include" in lower case pulled in More.xml.
    EXPECT_NE(nullptr, Color(L"ClrFromInclude"));
    EXPECT_EQ(9, Color(L"ClrFromInclude")->R());
    // "colors" in lower case is an unknown section: its elements are lost.
    EXPECT_EQ(nullptr, Color(L"ClrLowerCaseSection"));
}

TEST_F(SkinDocumentTest, DocumentWithTwoRootsContributesNothing)
{
    LoadSkin(L"basic");
    EXPECT_EQ(nullptr, Color(L"ClrBroken"));
    EXPECT_EQ(nullptr, Color(L"ClrBrokenToo"));
    // Skin.xml, More.xml and the malformed Broken.xml were loaded; the absent ones were not.
    EXPECT_EQ(3u, m_Ui.Documents());
}

TEST_F(SkinDocumentTest, TextDirectlyInSectionAndInLanguage1033ShareOneListFirstWins)
{
    LoadSkin(L"basic");
    EXPECT_STREQ(L"first", TextOf(m_Ui.GetUiElement(L"TxtDup", UI_ELEMENT_TEXT, 1033)));
    size_t dups = 0;
    for (size_t i = 0; i < m_Ui.Count(UI_ELEMENT_TEXT, 1033); ++i) {
        if (wcscmp(m_Ui.At(UI_ELEMENT_TEXT, 1033, i)->GetName(), L"TxtDup") == 0) {
            ++dups;
        }
    }
    EXPECT_EQ(2u, dups);
}

TEST_F(SkinDocumentTest, LanguageWithoutIdIs1033)
{
    LoadSkin(L"basic");
    EXPECT_STREQ(L"no id", TextOf(m_Ui.GetUiElement(L"TxtNoId", UI_ELEMENT_TEXT, 1033)));
}

TEST_F(SkinDocumentTest, LanguageBlockFilesUnderItsId)
{
    LoadSkin(L"basic");
    EXPECT_STREQ(L"\u6253\u5F00", TextOf(m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT, 2052)));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOnlyChinese", UI_ELEMENT_TEXT, 1033));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOnlyEnglish", UI_ELEMENT_TEXT, 2052));
    m_Ui.SetCurrentLanguage(2052);
    EXPECT_STREQ(L"English only", TextOf(m_Ui.GetUiElement(L"TxtOnlyEnglish", UI_ELEMENT_TEXT)));
    EXPECT_STREQ(L"\u4E2D\u6587", TextOf(m_Ui.GetUiElement(L"TxtOnlyChinese", UI_ELEMENT_TEXT)));
    EXPECT_NE(nullptr, m_Ui.GetUiElement(0x2000UL));
}

TEST_F(SkinDocumentTest, InfoesSectionIsItselfAnInformationElement)
{
    LoadSkin(L"basic");
    MirlUiElementInformation *info =
        static_cast<MirlUiElementInformation *>(m_Ui.GetUiElement(L"Infoes", UI_ELEMENT_INFORMATION, 1033));
    ASSERT_NE(nullptr, info);
    EXPECT_STREQ(L"Basic", info->GetTitle());
    EXPECT_STREQ(L"MIRL", info->GetAuthor());
    // Stored only: the element is filed under 1033 whatever "Language" says.
    EXPECT_EQ(2052, info->GetLanguageID());
    MirlUiElementInformation *extra =
        static_cast<MirlUiElementInformation *>(m_Ui.GetUiElement(L"Extra", UI_ELEMENT_INFORMATION, 1033));
    ASSERT_NE(nullptr, extra);
    EXPECT_EQ(nullptr, extra->GetTitle());
    EXPECT_STREQ(L"Someone", extra->GetAuthor());
    EXPECT_EQ(2u, m_Ui.Count(UI_ELEMENT_INFORMATION, 1033));
}

TEST_F(SkinDocumentTest, EmptyInfoesSectionStillYieldsAnElement)
{
    LoadSkin(L"comment_section");
    MirlUiElementInformation *info =
        static_cast<MirlUiElementInformation *>(m_Ui.GetUiElement(L"Infoes", UI_ELEMENT_INFORMATION, 1033));
    ASSERT_NE(nullptr, info);
    EXPECT_EQ(nullptr, info->GetTitle());
    EXPECT_EQ(nullptr, info->GetDescription());
    EXPECT_EQ(nullptr, info->GetAuthor());
    EXPECT_EQ(nullptr, info->GetVersion());
    EXPECT_EQ(1033, info->GetLanguageID());
    EXPECT_EQ(1u, m_Ui.Languages(UI_ELEMENT_INFORMATION));
}

TEST_F(SkinDocumentTest, SectionWithOnlyACommentProducesNoElement)
{
    LoadSkin(L"comment_section");
    EXPECT_EQ(0u, m_Ui.Languages(UI_ELEMENT_COLOR));
    EXPECT_EQ(1u, m_Ui.Count(UI_ELEMENT_TEXT, 1033));
}

TEST_F(SkinDocumentTest, TemplateWithOnlyClassStaysInListWithoutAttributes)
{
    LoadSkin(L"basic");
    MirlUiWindow *only = static_cast<MirlUiWindow *>(m_Ui.GetUiElement(L"OnlyClass", UI_ELEMENT_WINDOW, 1033));
    ASSERT_NE(nullptr, only);
    EXPECT_EQ(0u, only->GetAttributeCount());
    MirlUiWindow *frame = static_cast<MirlUiWindow *>(m_Ui.GetUiElement(L"MainFrame", UI_ELEMENT_WINDOW, 1033));
    ASSERT_NE(nullptr, frame);
    EXPECT_EQ(3u, frame->GetChildCount());
    EXPECT_EQ(nullptr, frame->GetChild(L"Lonely"));
    EXPECT_STREQ(L"OkButton", frame->GetChildByID(1001)->GetName());
    MirlUiWindow *inner = frame->GetChild(L"panel")->GetChild(L"INNER");
    ASSERT_NE(nullptr, inner);
    EXPECT_TRUE(inner->GetAttribute(L"visible")->GetBoolean());
    EXPECT_FALSE(inner->GetAttribute(L"Transparent")->GetBoolean());
}

TEST_F(SkinDocumentTest, HexadecimalLanguageIdRaisesTypeMismatch)
{
    EXPECT_EQ(DISP_E_TYPEMISMATCH, LoadError(L"bad_hex_id"));
    // What was read before stays; nothing after the failure was read.
    EXPECT_STREQ(L"before", TextOf(m_Ui.GetUiElement(L"TxtBefore", UI_ELEMENT_TEXT, 1033)));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtAfter", UI_ELEMENT_TEXT, 1033));
}

TEST_F(SkinDocumentTest, ColorOutOfRangeRaisesAndKeepsWhatWasRead)
{
    EXPECT_EQ(DISP_E_OVERFLOW, LoadError(L"bad_color"));
    EXPECT_EQ(10, Color(L"ClrGood")->R());
    MirlUiElementColor *bad = Color(L"ClrBad");
    ASSERT_NE(nullptr, bad);
    EXPECT_EQ(20, bad->R());
    EXPECT_EQ(0, bad->G());
    EXPECT_EQ(0, bad->B());
    EXPECT_EQ(nullptr, Color(L"ClrNeverRead"));
}

TEST_F(SkinDocumentTest, CommentInsideLanguageBlockRaisesNullPointer)
{
    EXPECT_EQ(E_POINTER, LoadError(L"comment_in_language"));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtNever", UI_ELEMENT_TEXT, 1033));
    // The comment became an element that stays in the list.
    ASSERT_EQ(1u, m_Ui.Count(UI_ELEMENT_TEXT, 1033));
    EXPECT_STREQ(L"#comment", m_Ui.At(UI_ELEMENT_TEXT, 1033, 0)->GetName());
}

TEST_F(SkinDocumentTest, IncludeCycleIsRefusedAndTheRestLoads)
{
    LoadSkin(L"cycle");
    // Skin.xml, A.xml and B.xml once each; the includes back into them were refused.
    EXPECT_EQ(3u, m_Ui.Documents());
    ASSERT_EQ(4u, m_Ui.Count(UI_ELEMENT_TEXT, 1033));
    EXPECT_STREQ(L"TxtRoot", m_Ui.At(UI_ELEMENT_TEXT, 1033, 0)->GetName());
    EXPECT_STREQ(L"TxtA", m_Ui.At(UI_ELEMENT_TEXT, 1033, 1)->GetName());
    EXPECT_STREQ(L"TxtB", m_Ui.At(UI_ELEMENT_TEXT, 1033, 2)->GetName());
    EXPECT_STREQ(L"TxtAfter", m_Ui.At(UI_ELEMENT_TEXT, 1033, 3)->GetName());
}

TEST_F(SkinDocumentTest, DeepTemplateTreeIsCutAtTheDepthLimit)
{
    LoadSkin(L"deep_templates");
    MirlUiWindow *level = static_cast<MirlUiWindow *>(m_Ui.GetUiElement(L"Level1", UI_ELEMENT_WINDOW, 1033));
    ASSERT_NE(nullptr, level);
    int depth = 1;
    while (level->GetChildCount() == 1) {
        level = level->GetChildByIndex(0);
        ++depth;
    }
    EXPECT_EQ(MirlUiWindow::MaxDepth, depth);
}

TEST_F(SkinDocumentTest, PackageWithoutSkinXmlLoadsEmpty)
{
    LoadSkin(L"empty");
    EXPECT_EQ(0u, m_Ui.Documents());
    for (unsigned long type = 1; type <= 6; ++type) {
        EXPECT_EQ(0u, m_Ui.Languages(type));
    }
}

TEST_F(SkinDocumentTest, SecondLoadReplacesTheFormerSkin)
{
    LoadSkin(L"basic");
    ASSERT_NE(nullptr, Color(L"ClrPanel"));
    LoadSkin(L"cycle");
    EXPECT_EQ(nullptr, Color(L"ClrPanel"));
    EXPECT_EQ(3u, m_Ui.Documents());
    EXPECT_NE(nullptr, m_Ui.GetUiElement(L"TxtRoot", UI_ELEMENT_TEXT, 1033));
}

TEST_F(SkinDocumentTest, FailedOpenKeepsFormerElementsButClosesThePackage)
{
    LoadSkin(L"basic");
    EXPECT_THROW(m_Ui.Load((mirltest::BinDir() + L"\\skins\\absent.zip").c_str()), MirlException);
    EXPECT_NE(nullptr, Color(L"ClrPanel"));
    EXPECT_EQ(nullptr, m_Ui.ExtractFile(L"Skin.xml"));
}

TEST_F(SkinDocumentTest, ExtractFileForwardsToThePackage)
{
    LoadSkin(L"basic");
    IStreamPtr stream = m_Ui.ExtractFile(L"buttons/ok.png");
    EXPECT_NE(nullptr, stream);
    HGLOBAL block = static_cast<HGLOBAL>(m_Ui.ExtractFileToHGLOBAL(L"More.xml"));
    ASSERT_NE(nullptr, block);
    EXPECT_GT(GlobalSize(block), 0u);
    GlobalFree(block);
}

TEST_F(SkinDocumentTest, EveryLookupAnswersTheFirstDefinitionInDocumentOrderThenEnglish)
{
    // Skins with duplicates across includes, several languages, cycles and many elements.
    for (const wchar_t *skin : {L"basic", L"cycle", L"windows", L"buttons", L"lint_references", L"sample"}) {
        LoadSkin(skin);
        for (unsigned long type = UI_ELEMENT_INFORMATION; type <= UI_ELEMENT_WINDOW; ++type) {
            for (unsigned int l = 0; l < m_Ui.GetLanguageCount(type); ++l) {
                const unsigned int language = m_Ui.GetLanguage(type, l);
                for (unsigned int i = 0; i < m_Ui.GetUiElementCount(type, language); ++i) {
                    const wchar_t *name = m_Ui.GetUiElementByIndex(type, language, i)->GetName();
                    EXPECT_EQ(FirstByWalking(m_Ui, type, language, name), m_Ui.GetUiElement(name, type, language))
                        << skin << " type " << type << " language " << language << " element " << i;
                    // From every language of the skin: its own first definition, else English's.
                    for (unsigned int c = 0; c < m_Ui.GetLanguageCount(type); ++c) {
                        const unsigned int current = m_Ui.GetLanguage(type, c);
                        MirlUiElement *expected = FirstByWalking(m_Ui, type, current, name);
                        if (expected == nullptr && current != 1033) {
                            expected = FirstByWalking(m_Ui, type, 1033, name);
                        }
                        m_Ui.SetCurrentLanguage(current);
                        EXPECT_EQ(expected, m_Ui.GetUiElement(name, type))
                            << skin << " type " << type << " current " << current << " element " << i;
                    }
                    m_Ui.SetCurrentLanguage(1033);
                }
            }
        }
    }
}

TEST_F(SkinDocumentTest, ReadingStopsAtTheDocumentLimitAndTheRestOfEachDocumentStillLoads)
{
    // Skin.xml includes Part.xml 600 times and Part.xml includes Leaf.xml: 1,201 documents.
    LoadSkin(L"many_includes");
    EXPECT_EQ(static_cast<unsigned>(MirlUI::MaxDocuments), m_Ui.Documents());
    // Skin.xml, then 511 Part and Leaf pairs, then a 512th Part whose Leaf is refused.
    ASSERT_EQ(1025u, m_Ui.Count(UI_ELEMENT_TEXT, 1033));
    EXPECT_STREQ(L"TxtRoot", m_Ui.At(UI_ELEMENT_TEXT, 1033, 0)->GetName());
    EXPECT_STREQ(L"TxtPart", m_Ui.At(UI_ELEMENT_TEXT, 1033, 1)->GetName());
    EXPECT_STREQ(L"TxtLeaf", m_Ui.At(UI_ELEMENT_TEXT, 1033, 1022)->GetName());
    EXPECT_STREQ(L"TxtPart", m_Ui.At(UI_ELEMENT_TEXT, 1033, 1023)->GetName());
    EXPECT_STREQ(L"TxtAfter", m_Ui.At(UI_ELEMENT_TEXT, 1033, 1024)->GetName());
}

TEST_F(SkinDocumentTest, IncludesRefusedAsCyclesCountTowardTheDocumentLimit)
{
    // Skin.xml includes Loop.xml three times; Loop.xml includes itself 1,100 times. The first
    // Loop.xml spends the limit on its refused includes, so the other two are left out.
    LoadSkin(L"many_cyclic_includes");
    EXPECT_EQ(2u, m_Ui.Documents());
    ASSERT_EQ(3u, m_Ui.Count(UI_ELEMENT_TEXT, 1033));
    EXPECT_STREQ(L"TxtRoot", m_Ui.At(UI_ELEMENT_TEXT, 1033, 0)->GetName());
    EXPECT_STREQ(L"TxtLoop", m_Ui.At(UI_ELEMENT_TEXT, 1033, 1)->GetName());
    EXPECT_STREQ(L"TxtAfter", m_Ui.At(UI_ELEMENT_TEXT, 1033, 2)->GetName());
}

TEST_F(SkinDocumentTest, IncludesOfMissingEntriesCountTowardTheDocumentLimit)
{
    // Skin.xml looks for Missing.xml 1,100 times, then includes Found.xml.
    LoadSkin(L"many_missing_includes");
    EXPECT_EQ(1u, m_Ui.Documents());
    ASSERT_EQ(2u, m_Ui.Count(UI_ELEMENT_TEXT, 1033));
    EXPECT_STREQ(L"TxtRoot", m_Ui.At(UI_ELEMENT_TEXT, 1033, 0)->GetName());
    EXPECT_STREQ(L"TxtAfter", m_Ui.At(UI_ELEMENT_TEXT, 1033, 1)->GetName());
}
