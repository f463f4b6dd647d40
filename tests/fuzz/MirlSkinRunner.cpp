#include "MirlSkinRunner.h"

#include "MirlFuzzHost.h"
#include "Ostra.h"

#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <vector>

namespace mirlfuzz {

namespace {

// Bounds on what one case does, so that a skin that multiplies its content (thousands of
// duplicated templates or images) costs the case time, not the run.
const unsigned kMaxLanguages = 8;
const unsigned kMaxTemplatesPerLanguage = 64;
const size_t kMaxImages = 32;
const size_t kMaxPaintedWindows = 1500;
const unsigned kMaxMenuItems = 8;

void SetPhase(SharedBlock *block, Phase phase)
{
    if (block != nullptr) {
        block->phase = phase;
        InterlockedIncrement(&block->heartbeat);
    }
}

MirlUI *Ui()
{
    return MirlUI::Instance();
}

void ReadElements()
{
    MirlUI *ui = Ui();
    volatile size_t sink = 0;
    for (unsigned long type = UI_ELEMENT_INFORMATION; type <= UI_ELEMENT_WINDOW; ++type) {
        unsigned languages = ui->GetLanguageCount(type);
        for (unsigned l = 0; l < languages; ++l) {
            unsigned language = ui->GetLanguage(type, l);
            unsigned count = ui->GetUiElementCount(type, language);
            for (unsigned i = 0; i < count; ++i) {
                MirlUiElement *element = ui->GetUiElementByIndex(type, language, i);
                if (element == nullptr) {
                    continue;
                }
                sink += wcslen(element->GetName());
                // Each name looked up as every type: a skin may name one thing as another.
                sink += ui->GetUiElement(element->GetName(), 1 + (i % 6)) != nullptr;
                switch (type) {
                case UI_ELEMENT_INFORMATION: {
                    auto *info = static_cast<MirlUiElementInformation *>(element);
                    sink += (info->GetTitle() != nullptr) + (info->GetAuthor() != nullptr) + info->GetLanguageID();
                    break;
                }
                case UI_ELEMENT_COLOR: sink += static_cast<MirlUiElementColor *>(element)->GetDWORD(); break;
                case UI_ELEMENT_FONT: {
                    auto *font = static_cast<MirlUiElementFont *>(element);
                    sink += wcslen(font->GetFamilyName()) + font->GetHeight() + font->GetWeight();
                    break;
                }
                case UI_ELEMENT_TEXT: sink += wcslen(static_cast<MirlUiElementText *>(element)->GetText()); break;
                case UI_ELEMENT_WINDOW: {
                    auto *window = static_cast<MirlUiWindow *>(element);
                    for (unsigned a = 0; a < window->GetAttributeCount(); ++a) {
                        MirlUiWindow::Attribute *attribute = window->GetAttributeByIndex(static_cast<int>(a));
                        sink += attribute->GetInteger() + attribute->GetBoolean() + wcslen(attribute->GetValue());
                    }
                    MirlUiWindow::Attribute *id = window->GetAttribute(L"CommandID");
                    if (id != nullptr) {
                        sink += ui->GetUiElement(static_cast<unsigned long>(id->GetInteger())) != nullptr;
                        sink += window->GetChildByID(static_cast<unsigned long>(id->GetInteger())) != nullptr;
                    }
                    break;
                }
                default: break;
                }
            }
        }
    }
}

// The colour key of an image element, resolved the way the controls resolve it.
bool ColorKey(const MirlUiElementImage *image, Gdiplus::Color &low, Gdiplus::Color &high)
{
    const wchar_t *names[] = {image->GetKeyColorLow(), image->GetKeyColorHigh()};
    if (names[0] == nullptr && names[1] == nullptr) {
        return false;
    }
    Gdiplus::Color found[2];
    bool have[2] = {false, false};
    for (int i = 0; i < 2; ++i) {
        auto *color = names[i] != nullptr ? static_cast<MirlUiElementColor *>(Ui()->GetUiElement(names[i], UI_ELEMENT_COLOR)) : nullptr;
        if (color != nullptr) {
            found[i] = Gdiplus::Color(color->A(), color->R(), color->G(), color->B());
            have[i] = true;
        }
    }
    low = have[0] ? found[0] : found[1];
    high = have[1] ? found[1] : found[0];
    return true;
}

void DecodeImages(Canvas &canvas)
{
    MirlUI *ui = Ui();
    std::set<std::wstring> seen;
    unsigned languages = ui->GetLanguageCount(UI_ELEMENT_IMAGE);
    for (unsigned l = 0; l < languages && seen.size() < kMaxImages; ++l) {
        unsigned language = ui->GetLanguage(UI_ELEMENT_IMAGE, l);
        unsigned count = ui->GetUiElementCount(UI_ELEMENT_IMAGE, language);
        for (unsigned i = 0; i < count && seen.size() < kMaxImages; ++i) {
            auto *image = static_cast<MirlUiElementImage *>(ui->GetUiElementByIndex(UI_ELEMENT_IMAGE, language, i));
            if (image == nullptr || image->GetFileName() == nullptr || !seen.insert(image->GetFileName()).second) {
                continue;
            }
            HGLOBAL block = static_cast<HGLOBAL>(ui->ExtractFileToHGLOBAL(image->GetFileName()));
            if (block != nullptr) {
                volatile SIZE_T size = ::GlobalSize(block);
                (void)size;
                ::GlobalFree(block);
            }
            // Decoded the way the controls decode their pictures.
            std::unique_ptr<Gdiplus::Bitmap> picture(MIRL::LoadElementBitmap(image));
            if (picture == nullptr) {
                continue;
            }
            Gdiplus::Bitmap &bitmap = *picture;
            Gdiplus::Graphics graphics(canvas.dc());
            Gdiplus::ImageAttributes attributes;
            Gdiplus::Color low;
            Gdiplus::Color high;
            if (ColorKey(image, low, high)) {
                attributes.SetColorKey(low, high);
            }
            UINT width = bitmap.GetWidth();
            UINT height = bitmap.GetHeight();
            graphics.DrawImage(&bitmap, Gdiplus::Rect(0, 0, 48, 48), 0, 0, static_cast<INT>(width),
                               static_cast<INT>(height), Gdiplus::UnitPixel, &attributes);
        }
    }
}

// A native menu whose strings name text elements, re-texted by the library.
void ResetMenu()
{
    MirlUI *ui = Ui();
    HMENU menu = ::CreatePopupMenu();
    HMENU sub = ::CreatePopupMenu();
    unsigned added = 0;
    unsigned languages = ui->GetLanguageCount(UI_ELEMENT_TEXT);
    for (unsigned l = 0; l < languages && added < kMaxMenuItems; ++l) {
        unsigned language = ui->GetLanguage(UI_ELEMENT_TEXT, l);
        unsigned count = ui->GetUiElementCount(UI_ELEMENT_TEXT, language);
        for (unsigned i = 0; i < count && added < kMaxMenuItems; ++i, ++added) {
            MirlUiElement *text = ui->GetUiElementByIndex(UI_ELEMENT_TEXT, language, i);
            ::AppendMenuW(added % 2 == 0 ? menu : sub, MF_STRING, 100 + added, text->GetName());
        }
    }
    std::wstring longName(700, L'M');
    ::AppendMenuW(menu, MF_STRING, 99, longName.c_str());
    ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    ::AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), L"Sub");
    MirlMenuReset(menu);
    ::DestroyMenu(menu);
}

void CollectTree(MirlWindowBase *window, std::vector<MirlWindowBase *> &all)
{
    if (all.size() >= kMaxPaintedWindows) {
        return;
    }
    all.push_back(window);
    for (unsigned i = 0; i < window->GetChildCount(); ++i) {
        CollectTree(window->GetChildByIndex(i), all);
    }
}

void CreateLayOutPaint(SharedBlock *block, Canvas &canvas)
{
    MirlUI *ui = Ui();
    FuzzHost host;
    if (!host.Open(320, 240)) {
        return;
    }
    const unsigned language = ui->GetCurrentLanguage();
    SetPhase(block, PhaseCreate);
    unsigned languages = ui->GetLanguageCount(UI_ELEMENT_WINDOW);
    for (unsigned l = 0; l < languages && l < kMaxLanguages; ++l) {
        unsigned templateLanguage = ui->GetLanguage(UI_ELEMENT_WINDOW, l);
        // Names resolve in the current language first: each language's templates in turn.
        ui->SetCurrentLanguage(templateLanguage);
        std::set<std::wstring> names;
        unsigned count = ui->GetUiElementCount(UI_ELEMENT_WINDOW, templateLanguage);
        for (unsigned i = 0; i < count && names.size() < kMaxTemplatesPerLanguage; ++i) {
            MirlUiElement *element = ui->GetUiElementByIndex(UI_ELEMENT_WINDOW, templateLanguage, i);
            if (element == nullptr || !names.insert(element->GetName()).second) {
                continue;
            }
            MirlWindow *window = new MirlWindow();
            host.Adopt(window);
            window->Create(&host, host.m_hWnd, static_cast<LPRECT>(nullptr), element->GetName());
            if (block != nullptr) {
                InterlockedIncrement(&block->heartbeat);
            }
        }
    }
    ui->SetCurrentLanguage(language);
    PumpMessages();

    SetPhase(block, PhaseLayout);
    // Each layout moves every window of the trees below it, which is what costs: the host at no
    // size, each template's window at an extreme size (negative width, the largest height), then
    // everything back at its real size.
    ::SendMessageW(host.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(0, 0));
    for (unsigned i = 0; i < host.GetChildCount(); ++i) {
        HWND window = host.GetChildByIndex(i)->m_hWnd;
        RECT client = {};
        ::GetClientRect(window, &client);
        ::SendMessageW(window, WM_SIZE, SIZE_MAXIMIZED, MAKELPARAM(0xFFFF, 0x7FFF));
        ::SendMessageW(window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
    }
    ::SendMessageW(host.m_hWnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(320, 240));
    PumpMessages();

    SetPhase(block, PhasePaint);
    std::vector<MirlWindowBase *> all;
    CollectTree(&host, all);
    if (block != nullptr) {
        block->windows += static_cast<LONG>(all.size() - 1);
    }
    // Into the memory picture through both of its messages, every other window each; then the
    // whole tree on the screen.
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i]->m_hWnd != nullptr) {
            ::SendMessageW(all[i]->m_hWnd, i % 2 == 0 ? WM_PAINT : WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()),
                           i % 2 == 0 ? 0 : PRF_CLIENT);
        }
    }
    ::RedrawWindow(host.m_hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    PumpMessages();

    SetPhase(block, PhaseDestroy);
    host.Close();
    PumpMessages();
}

} // namespace

Outcome RunSkinPackage(const std::wstring &path, unsigned language, SharedBlock *block)
{
    Outcome outcome;
    try {
        SetPhase(block, PhaseLoad);
        MirlIntialize(path.c_str(), language);
        Canvas canvas(96, 96);
        SetPhase(block, PhaseElements);
        ReadElements();
        SetPhase(block, PhaseImages);
        DecodeImages(canvas);
        SetPhase(block, PhaseMenu);
        ResetMenu();
        CreateLayOutPaint(block, canvas);
    } catch (const MirlException &e) {
        outcome = {OutcomeMirlException, e.error()};
    } catch (const _com_error &e) {
        outcome = {OutcomeComError, static_cast<LONG>(e.Error())};
    } catch (const OstraWin32Error &e) {
        outcome = {OutcomeWin32Error, static_cast<LONG>(e.code())};
    } catch (const std::bad_alloc &) {
        outcome = {OutcomeBadAlloc, 0};
    } catch (const std::length_error &) {
        outcome = {OutcomeLengthError, 0};
    }
    SetPhase(block, PhaseUnload);
    MirlUnIntialize();
    PumpMessages();
    return outcome;
}

} // namespace mirlfuzz
