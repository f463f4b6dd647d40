#include "MirlTestSupport.h"

#include <gtest/gtest.h>

using mirltest::ProbeUI;
using mirltest::TextOf;

namespace {

MirlUiElementText *MakeText(const wchar_t *name, const wchar_t *text)
{
    std::wstring xml = std::wstring(L"<") + name + L" Text='" + text + L"'/>";
    MirlUiElementText *element = new MirlUiElementText();
    element->Load(mirltest::ParseElement(xml.c_str()));
    return element;
}

MirlUiWindow *MakeTemplate(const wchar_t *xml)
{
    MirlUiWindow *window = new MirlUiWindow();
    window->Load(mirltest::ParseElement(xml));
    return window;
}

class UiManagerTest : public ::testing::Test {
protected:
    mirltest::ComScope m_Com;
    ProbeUI m_Ui;
};

} // namespace

TEST_F(UiManagerTest, NewManagerStartsInEnglishWithNothingLoaded)
{
    EXPECT_EQ(1033u, m_Ui.GetCurrentLanguage());
    EXPECT_FALSE(m_Ui.IsValid());
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(0x1000UL));
    EXPECT_EQ(nullptr, m_Ui.ExtractFile(L"Skin.xml"));
    EXPECT_EQ(nullptr, m_Ui.ExtractFileToHGLOBAL(L"Skin.xml"));
}

TEST_F(UiManagerTest, TypeZeroOrSevenIsNullWithoutTouchingAMap)
{
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, MakeText(L"TxtOpen", L"Open"));
    unsigned long before = m_Ui.GetListsSearched();
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", 0));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", 7));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", 0, 1033));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", 7, 1033));
    EXPECT_EQ(before, m_Ui.GetListsSearched());
    for (unsigned long type = 1; type <= 6; ++type) {
        EXPECT_EQ(type == UI_ELEMENT_TEXT ? 1u : 0u, m_Ui.Languages(type)) << "type " << type;
    }
}

TEST_F(UiManagerTest, FallbackToEnglishOnlyThroughTheTwoArgumentForm)
{
    MirlUiElementText *english = MakeText(L"TxtOnlyEnglish", L"English");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, english);
    m_Ui.SetCurrentLanguage(2052);
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtOnlyEnglish", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOnlyEnglish", UI_ELEMENT_TEXT, 2052));
}

TEST_F(UiManagerTest, CurrentLanguageWinsOverEnglish)
{
    MirlUiElementText *english = MakeText(L"TxtOpen", L"Open");
    MirlUiElementText *chinese = MakeText(L"TxtOpen", L"Chinese");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, english);
    m_Ui.Add(UI_ELEMENT_TEXT, 2052, chinese);
    m_Ui.SetCurrentLanguage(2052);
    EXPECT_EQ(chinese, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    m_Ui.SetCurrentLanguage(1033);
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, RelatedLanguagesAreNotConsidered)
{
    m_Ui.Add(UI_ELEMENT_TEXT, 1028, MakeText(L"TxtOpen", L"Traditional"));
    m_Ui.SetCurrentLanguage(2052);
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, EnglishMissSearchesOneListOnly)
{
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, MakeText(L"TxtOpen", L"Open"));
    m_Ui.SetCurrentLanguage(1033);
    unsigned long before = m_Ui.GetListsSearched();
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtMissing", UI_ELEMENT_TEXT));
    EXPECT_EQ(before + 1, m_Ui.GetListsSearched());

    m_Ui.SetCurrentLanguage(2052);
    before = m_Ui.GetListsSearched();
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtMissing", UI_ELEMENT_TEXT));
    EXPECT_EQ(before + 2, m_Ui.GetListsSearched());
}

TEST_F(UiManagerTest, NamesCompareCaseSensitively)
{
    MirlUiElementText *element = MakeText(L"TxtOpen", L"Open");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, element);
    EXPECT_EQ(element, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"txtopen", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TXTOPEN", UI_ELEMENT_TEXT, 1033));
}

TEST_F(UiManagerTest, FirstOfTwoSameNamesWins)
{
    MirlUiElementText *first = MakeText(L"TxtDup", L"first");
    MirlUiElementText *second = MakeText(L"TxtDup", L"second");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, first);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, second);
    EXPECT_EQ(first, m_Ui.GetUiElement(L"TxtDup", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, ElementsAddedAfterALookupAreFoundAndNeverDisplaceTheFirst)
{
    MirlUiElementText *first = MakeText(L"TxtDup", L"first");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, first);
    EXPECT_EQ(first, m_Ui.GetUiElement(L"TxtDup", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtLater", UI_ELEMENT_TEXT));
    MirlUiElementText *later = MakeText(L"TxtLater", L"later");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, MakeText(L"TxtDup", L"second"));
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, later);
    EXPECT_EQ(first, m_Ui.GetUiElement(L"TxtDup", UI_ELEMENT_TEXT));
    EXPECT_EQ(later, m_Ui.GetUiElement(L"TxtLater", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, LongNamesThatShareTheirStartAreToldApart)
{
    // 15 characters fit a name whole beside its terminator; 16 and more are compared in full.
    const wchar_t *const names[] = {L"TxtFifteenChars", L"TxtSixteenCharsX", L"TxtAVeryLongNameNumberOne",
                                    L"TxtAVeryLongNameNumberTwo"};
    MirlUiElementText *elements[4];
    for (int i = 0; i < 4; ++i) {
        elements[i] = MakeText(names[i], L"x");
        m_Ui.Add(UI_ELEMENT_TEXT, 1033, elements[i]);
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(elements[i], m_Ui.GetUiElement(names[i], UI_ELEMENT_TEXT)) << i;
    }
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtAVeryLongName", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtSixteenChars", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtAVeryLongNameNumberOneAndMore", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, AnElementWithoutANameAnswersTheEmptyName)
{
    MirlUiElementText *unnamed = new MirlUiElementText();
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, unnamed);
    EXPECT_EQ(unnamed, m_Ui.GetUiElement(L"", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, LookupIsByTypeAsWellAsName)
{
    MirlUiElementColor *color = new MirlUiElementColor();
    color->SetName(L"Same");
    m_Ui.Add(UI_ELEMENT_COLOR, 1033, color);
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"Same", UI_ELEMENT_TEXT));
    EXPECT_EQ(color, m_Ui.GetUiElement(L"Same", UI_ELEMENT_COLOR));
}

TEST_F(UiManagerTest, SetCurrentLanguageChangesTheNextLookupAtOnce)
{
    MirlUiElementText *english = MakeText(L"TxtOpen", L"Open");
    MirlUiElementText *chinese = MakeText(L"TxtOpen", L"Chinese");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, english);
    m_Ui.Add(UI_ELEMENT_TEXT, 2052, chinese);
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    m_Ui.SetCurrentLanguage(2052);
    EXPECT_EQ(2052u, m_Ui.GetCurrentLanguage());
    EXPECT_EQ(chinese, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, CommandLookupSearchesTopLevelTemplatesWithFallback)
{
    MirlUiWindow *frame = MakeTemplate(L"<MainFrame Class='WINDOW' CommandID='0x1000'><Ok Class='BUTTON' CommandID='1001'/></MainFrame>");
    MirlUiWindow *chinese = MakeTemplate(L"<ChineseFrame Class='WINDOW' CommandID='8192'/>");
    m_Ui.Add(UI_ELEMENT_WINDOW, 1033, frame);
    m_Ui.Add(UI_ELEMENT_WINDOW, 2052, chinese);
    EXPECT_EQ(frame, m_Ui.GetUiElement(4096UL, 1033u));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(1001UL));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(4096UL, 2052u));
    m_Ui.SetCurrentLanguage(2052);
    EXPECT_EQ(frame, m_Ui.GetUiElement(4096UL));
    EXPECT_EQ(chinese, m_Ui.GetUiElement(0x2000UL));
    m_Ui.SetCurrentLanguage(1033);
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(0x2000UL));
}

TEST(UiManagerSingleton, InstanceIsCreatedOnceAndReleaseForgetsIt)
{
    MirlUI *first = MirlUI::Instance();
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(first, MirlUI::Instance());
    first->SetCurrentLanguage(1041);
    MirlUI::Release();
    MirlUI *second = MirlUI::Instance();
    ASSERT_NE(nullptr, second);
    EXPECT_EQ(1033u, second->GetCurrentLanguage());
    second->Release();
    // Releasing with nothing there does nothing.
    MirlUI::Release();
}

TEST_F(UiManagerTest, EnumerationListsLanguagesAscendingAndElementsInOrder)
{
    MirlUiElementText *a = MakeText(L"A", L"a");
    MirlUiElementText *b = MakeText(L"B", L"b");
    MirlUiElementText *c = MakeText(L"C", L"c");
    m_Ui.Add(UI_ELEMENT_TEXT, 2052, a);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, b);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, c);
    ASSERT_EQ(2u, m_Ui.GetLanguageCount(UI_ELEMENT_TEXT));
    EXPECT_EQ(1033u, m_Ui.GetLanguage(UI_ELEMENT_TEXT, 0));
    EXPECT_EQ(2052u, m_Ui.GetLanguage(UI_ELEMENT_TEXT, 1));
    EXPECT_EQ(0u, m_Ui.GetLanguage(UI_ELEMENT_TEXT, 2));
    EXPECT_EQ(2u, m_Ui.GetUiElementCount(UI_ELEMENT_TEXT, 1033));
    EXPECT_EQ(b, m_Ui.GetUiElementByIndex(UI_ELEMENT_TEXT, 1033, 0));
    EXPECT_EQ(c, m_Ui.GetUiElementByIndex(UI_ELEMENT_TEXT, 1033, 1));
    EXPECT_EQ(nullptr, m_Ui.GetUiElementByIndex(UI_ELEMENT_TEXT, 1033, 2));
    EXPECT_EQ(nullptr, m_Ui.GetUiElementByIndex(7, 1033, 0));
    EXPECT_EQ(0u, m_Ui.GetLanguageCount(0));
    EXPECT_EQ(0u, m_Ui.GetUiElementCount(UI_ELEMENT_COLOR, 1033));
}

TEST_F(UiManagerTest, RenamingAListedElementMovesItsLookupToTheNewName)
{
    MirlUiElementText *first = MakeText(L"TxtOpen", L"Open");
    MirlUiElementText *second = MakeText(L"TxtClose", L"Close");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, first);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, second);
    ASSERT_EQ(first, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    ASSERT_EQ(second, m_Ui.GetUiElement(L"TxtClose", UI_ELEMENT_TEXT));

    first->SetName(L"TxtRenamed");
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    EXPECT_EQ(first, m_Ui.GetUiElement(L"TxtRenamed", UI_ELEMENT_TEXT));

    // The earlier element now shares the later one's name, and the earlier one wins.
    first->SetName(L"TxtClose");
    EXPECT_EQ(first, m_Ui.GetUiElement(L"TxtClose", UI_ELEMENT_TEXT));

    // Loading a listed element again renames it too.
    second->Load(mirltest::ParseElement(L"<TxtReloaded Text='Again'/>"));
    EXPECT_EQ(second, m_Ui.GetUiElement(L"TxtReloaded", UI_ELEMENT_TEXT));
    EXPECT_EQ(first, m_Ui.GetUiElement(L"TxtClose", UI_ELEMENT_TEXT));
}
