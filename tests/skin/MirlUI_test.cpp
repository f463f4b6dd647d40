#include "MirlLookupIndex.h"
#include "MirlTestSupport.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

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

MirlUiElementText *Named(const std::wstring &name)
{
    MirlUiElementText *element = new MirlUiElementText();
    element->SetName(name.c_str());
    return element;
}

class UiManagerTest : public ::testing::Test {
protected:
    struct Translated {
        MirlUiElementText *english;
        MirlUiElementText *chinese;
    };
    // "TxtOpen" listed in 1033, then in 2052.
    Translated AddOpenInEnglishAndChinese()
    {
        Translated open{MakeText(L"TxtOpen", L"Open"), MakeText(L"TxtOpen", L"Chinese")};
        m_Ui.Add(UI_ELEMENT_TEXT, 1033, open.english);
        m_Ui.Add(UI_ELEMENT_TEXT, 2052, open.chinese);
        return open;
    }

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
    const auto [english, chinese] = AddOpenInEnglishAndChinese();
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
    // Names longer than an index slot holds are compared where their elements keep them.
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
    const auto [english, chinese] = AddOpenInEnglishAndChinese();
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

TEST_F(UiManagerTest, NamesAtAndPastWhatAnIndexSlotHoldsAreToldApart)
{
    const std::wstring full(MirlLookupIndex::InlineName, L'N');
    const std::wstring shorter = full.substr(1);
    const std::wstring longer = full + L"N";
    const std::wstring otherEnd = shorter + L"M";
    MirlUiElementText *elements[] = {Named(full), Named(shorter), Named(longer), Named(otherEnd)};
    for (MirlUiElementText *element : elements) {
        m_Ui.Add(UI_ELEMENT_TEXT, 1033, element);
    }
    EXPECT_EQ(elements[0], m_Ui.GetUiElement(full.c_str(), UI_ELEMENT_TEXT));
    EXPECT_EQ(elements[1], m_Ui.GetUiElement(shorter.c_str(), UI_ELEMENT_TEXT));
    EXPECT_EQ(elements[2], m_Ui.GetUiElement(longer.c_str(), UI_ELEMENT_TEXT));
    EXPECT_EQ(elements[3], m_Ui.GetUiElement(otherEnd.c_str(), UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement((longer + L"N").c_str(), UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(full.substr(2).c_str(), UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, NamesBeyondAsciiAreNotConfusedWithTheirLowBytes)
{
    // U+0141 and U+4E41 end in the byte of 'A'; U+00E9 is one byte in Latin-1.
    MirlUiElementText *ascii = Named(L"TA");
    MirlUiElementText *latin = Named(L"T\u0141");
    MirlUiElementText *cjk = Named(L"T\u4E41");
    MirlUiElementText *accent = Named(L"T\u00E9");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, latin);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, cjk);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, ascii);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, accent);
    EXPECT_EQ(ascii, m_Ui.GetUiElement(L"TA", UI_ELEMENT_TEXT));
    EXPECT_EQ(latin, m_Ui.GetUiElement(L"T\u0141", UI_ELEMENT_TEXT));
    EXPECT_EQ(cjk, m_Ui.GetUiElement(L"T\u4E41", UI_ELEMENT_TEXT));
    EXPECT_EQ(accent, m_Ui.GetUiElement(L"T\u00E9", UI_ELEMENT_TEXT));
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"T\u0041\u0001", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, ACurrentLanguageElementAddedAfterTheFallbackAnsweredTakesOver)
{
    // All made before the first lookup: naming an element starts the index again.
    MirlUiElementText *english = MakeText(L"TxtOpen", L"Open");
    MirlUiElementText *chinese = MakeText(L"TxtOpen", L"Chinese");
    MirlUiElementText *secondChinese = MakeText(L"TxtOpen", L"Second");
    MirlUiElementText *secondEnglish = MakeText(L"TxtOpen", L"Second English");
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, english);
    m_Ui.SetCurrentLanguage(2052);
    unsigned long before = m_Ui.GetListsSearched();
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    EXPECT_EQ(before + 2, m_Ui.GetListsSearched());

    m_Ui.Add(UI_ELEMENT_TEXT, 2052, chinese);
    m_Ui.Add(UI_ELEMENT_TEXT, 2052, secondChinese);
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, secondEnglish);
    before = m_Ui.GetListsSearched();
    EXPECT_EQ(chinese, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    EXPECT_EQ(before + 1, m_Ui.GetListsSearched());
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT, 1033));
}

namespace {

// Three units after name that bring the index's hash, FNV-1a over UTF-16 units, back to what
// it was after name: the index files both under one hash and must tell them apart by name.
std::wstring SuffixOfTheSameHash(const std::wstring &name)
{
    const std::uint32_t prime = 16777619u;
    const std::uint32_t inverse = 899433627u; // prime * inverse == 1 modulo 2^32
    std::uint32_t hash = 2166136261u;
    for (wchar_t unit : name) {
        hash = (hash ^ static_cast<unsigned short>(unit)) * prime;
    }
    for (std::uint32_t first = 1; first < 0x10000; ++first) {
        for (std::uint32_t second = 1; second < 0x10000; ++second) {
            const std::uint32_t third = ((((hash ^ first) * prime) ^ second) * prime) ^ (hash * inverse);
            if (third != 0 && third < 0x10000) {
                return std::wstring{static_cast<wchar_t>(first), static_cast<wchar_t>(second),
                                    static_cast<wchar_t>(third)};
            }
        }
    }
    return std::wstring();
}

} // namespace

TEST_F(UiManagerTest, NamesOfOneHashAreToldApartByTheirCharacters)
{
    const std::wstring full(MirlLookupIndex::InlineName, L'N');
    const std::wstring shorter(MirlLookupIndex::InlineName - 3, L'S');
    const std::wstring fullSuffix = SuffixOfTheSameHash(full);
    const std::wstring shorterSuffix = SuffixOfTheSameHash(shorter);
    ASSERT_EQ(3u, fullSuffix.size());
    ASSERT_EQ(3u, shorterSuffix.size());
    ASSERT_EQ(MirlLookupIndex::Tag(full.c_str()), MirlLookupIndex::Tag((full + fullSuffix).c_str()));
    ASSERT_EQ(MirlLookupIndex::Tag(shorter.c_str()), MirlLookupIndex::Tag((shorter + shorterSuffix).c_str()));

    // The names kept in their slots first, so that the longer ones are compared with them.
    MirlUiElementText *elements[] = {Named(full), Named(shorter), Named(full + fullSuffix),
                                     Named(shorter + shorterSuffix)};
    for (MirlUiElementText *element : elements) {
        m_Ui.Add(UI_ELEMENT_TEXT, 1033, element);
    }
    for (MirlUiElementText *element : elements) {
        EXPECT_EQ(element, m_Ui.GetUiElement(element->GetName(), UI_ELEMENT_TEXT));
    }
    m_Ui.SetCurrentLanguage(2052);
    for (MirlUiElementText *element : elements) {
        EXPECT_EQ(element, m_Ui.GetUiElement(element->GetName(), UI_ELEMENT_TEXT));
    }
}

TEST_F(UiManagerTest, TheLookupWithFallbackFollowsEveryChangeOfLanguage)
{
    const auto [english, chinese] = AddOpenInEnglishAndChinese();
    MirlUiElementText *japanese = MakeText(L"TxtOpen", L"Japanese");
    MirlUiElementText *onlyJapanese = MakeText(L"TxtJapan", L"Japan");
    m_Ui.Add(UI_ELEMENT_TEXT, 1041, japanese);
    m_Ui.Add(UI_ELEMENT_TEXT, 1041, onlyJapanese);
    const struct {
        unsigned int language;
        MirlUiElementText *open;
        MirlUiElementText *japan;
    } steps[] = {{2052, chinese, nullptr}, {1041, japanese, onlyJapanese}, {1033, english, nullptr},
                 {1041, japanese, onlyJapanese}, {1028, english, nullptr}, {2052, chinese, nullptr}};
    for (const auto &step : steps) {
        m_Ui.SetCurrentLanguage(step.language);
        EXPECT_EQ(step.open, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT)) << step.language;
        EXPECT_EQ(step.japan, m_Ui.GetUiElement(L"TxtJapan", UI_ELEMENT_TEXT)) << step.language;
    }
}

TEST_F(UiManagerTest, ALanguageWhoseListAppearsAfterALookupIsRead)
{
    MirlUiElementText *english = MakeText(L"TxtOpen", L"Open");
    m_Ui.Add(UI_ELEMENT_TEXT, 2052, MakeText(L"TxtOther", L"Other"));
    m_Ui.SetCurrentLanguage(2052);
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    m_Ui.Add(UI_ELEMENT_TEXT, 1033, english);
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    MirlUiWindow *frame = MakeTemplate(L"<MainFrame Class='WINDOW'/>");
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"MainFrame", UI_ELEMENT_WINDOW));
    m_Ui.Add(UI_ELEMENT_WINDOW, 1033, frame);
    EXPECT_EQ(frame, m_Ui.GetUiElement(L"MainFrame", UI_ELEMENT_WINDOW));
}

TEST_F(UiManagerTest, RenamingIsSeenByTheLookupWithFallback)
{
    const auto [english, chinese] = AddOpenInEnglishAndChinese();
    m_Ui.SetCurrentLanguage(2052);
    ASSERT_EQ(chinese, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    chinese->SetName(L"TxtClose");
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    EXPECT_EQ(chinese, m_Ui.GetUiElement(L"TxtClose", UI_ELEMENT_TEXT));
    english->SetName(L"TxtGone");
    EXPECT_EQ(nullptr, m_Ui.GetUiElement(L"TxtOpen", UI_ELEMENT_TEXT));
    EXPECT_EQ(english, m_Ui.GetUiElement(L"TxtGone", UI_ELEMENT_TEXT));
}

TEST_F(UiManagerTest, ThousandsOfNamesAnswerAsWalkingTheListsInOrder)
{
    // Two languages of 3,000 random names each from a pool of 4,000, duplicates included, some
    // short, some past a slot's width, some beyond ASCII, added in turns between lookups.
    std::mt19937 random(7);
    std::vector<std::wstring> pool;
    for (int i = 0; i < 4000; ++i) {
        std::wstring name = L"N" + std::to_wstring(i);
        name.append(random() % 3 == 0 ? random() % 16 : 0, static_cast<wchar_t>(L'a' + i % 26));
        if (i % 97 == 0) {
            name += L'\u4E2D';
        }
        pool.push_back(name);
    }
    m_Ui.SetCurrentLanguage(2052);
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 1000; ++i) {
            m_Ui.Add(UI_ELEMENT_TEXT, 2052, Named(pool[random() % pool.size()]));
            m_Ui.Add(UI_ELEMENT_TEXT, 1033, Named(pool[random() % pool.size()]));
        }
        // The first of each name in 2052, then in 1033: what walking the two lists finds.
        std::map<std::wstring, MirlUiElement *> first;
        size_t inChinese = 0;
        for (unsigned int language : {2052u, 1033u}) {
            for (size_t i = 0; i < m_Ui.Count(UI_ELEMENT_TEXT, language); ++i) {
                MirlUiElement *element = m_Ui.At(UI_ELEMENT_TEXT, language, i);
                first.emplace(element->GetName(), element);
            }
            inChinese = language == 2052 ? first.size() : inChinese;
        }
        const size_t inEnglish = first.size() - inChinese;
        for (const std::wstring &name : pool) {
            const auto found = first.find(name);
            MirlUiElement *expected = found != first.end() ? found->second : nullptr;
            ASSERT_EQ(expected, m_Ui.GetUiElement(name.c_str(), UI_ELEMENT_TEXT)) << round;
            ASSERT_EQ(nullptr, m_Ui.GetUiElement((name + L"#").c_str(), UI_ELEMENT_TEXT)) << round;
        }
        EXPECT_GT(inChinese, 500u);
        EXPECT_GT(inEnglish, 200u);
    }
}
