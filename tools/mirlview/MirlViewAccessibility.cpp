#include "MirlViewAccessibility.h"

#include <oleacc.h>

namespace mirlview {
namespace {

std::wstring TakeText(HRESULT result, BSTR text)
{
    std::wstring out = result == S_OK && text != nullptr ? std::wstring(text, ::SysStringLen(text)) : std::wstring();
    ::SysFreeString(text);
    return out;
}

std::wstring RoleText(long role)
{
    wchar_t text[128] = {};
    return ::GetRoleTextW(static_cast<DWORD>(role), text, 128) > 0 ? std::wstring(text) : L"role " + std::to_wstring(role);
}

std::wstring StateText(long state)
{
    std::wstring out;
    for (int bit = 0; bit < 31; ++bit) {
        const DWORD flag = 1UL << bit;
        if ((static_cast<DWORD>(state) & flag) == 0) {
            continue;
        }
        wchar_t text[128] = {};
        if (::GetStateTextW(flag, text, 128) == 0) {
            continue;
        }
        out += (out.empty() ? L"" : L", ") + std::wstring(text);
    }
    return out;
}

std::wstring Quoted(const std::wstring &text)
{
    return L"\"" + text + L"\"";
}

void Walk(HWND window, int depth, std::vector<std::wstring> &lines)
{
    IAccessible *object = nullptr;
    if (FAILED(::AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                            reinterpret_cast<void **>(&object))) ||
        object == nullptr) {
        return;
    }
    VARIANT self;
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    VARIANT answer;
    ::VariantInit(&answer);
    long role = 0;
    long state = 0;
    if (object->get_accRole(self, &answer) == S_OK && answer.vt == VT_I4) {
        role = answer.lVal;
    }
    ::VariantClear(&answer);
    if (object->get_accState(self, &answer) == S_OK && answer.vt == VT_I4) {
        state = answer.lVal;
    }
    ::VariantClear(&answer);
    BSTR text = nullptr;
    HRESULT result = object->get_accName(self, &text);
    const std::wstring name = TakeText(result, text);
    text = nullptr;
    result = object->get_accValue(self, &text);
    const bool hasValue = result == S_OK;
    const std::wstring value = TakeText(result, text);
    text = nullptr;
    result = object->get_accDefaultAction(self, &text);
    const std::wstring action = TakeText(result, text);

    std::wstring line(static_cast<size_t>(depth) * 2, L' ');
    line += RoleText(role);
    if (!name.empty()) {
        line += L" " + Quoted(name);
    }
    if (hasValue) {
        line += L" = " + Quoted(value);
    }
    const std::wstring states = StateText(state);
    if (!states.empty()) {
        line += L" [" + states + L"]";
    }
    if (!action.empty()) {
        line += L" (" + action + L")";
    }
    lines.push_back(line);

    long count = 0;
    if (SUCCEEDED(object->get_accChildCount(&count)) && count > 0) {
        std::vector<VARIANT> children(static_cast<size_t>(count));
        long got = 0;
        if (SUCCEEDED(::AccessibleChildren(object, 0, count, children.data(), &got))) {
            for (long i = 0; i < got; ++i) {
                VARIANT &child = children[static_cast<size_t>(i)];
                HWND found = nullptr;
                if (child.vt == VT_DISPATCH && child.pdispVal != nullptr) {
                    IAccessible *part = nullptr;
                    if (SUCCEEDED(child.pdispVal->QueryInterface(__uuidof(IAccessible), reinterpret_cast<void **>(&part)))) {
                        ::WindowFromAccessibleObject(part, &found);
                        part->Release();
                    }
                }
                ::VariantClear(&child);
                if (found != nullptr && found != window) {
                    Walk(found, depth + 1, lines);
                }
            }
        }
    }
    object->Release();
}

} // namespace

std::vector<std::wstring> AccessibilityTree(HWND window)
{
    std::vector<std::wstring> lines;
    Walk(window, 0, lines);
    return lines;
}

} // namespace mirlview
