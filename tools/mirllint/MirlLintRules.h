// What the checks know about the skin format: section and class names, the attributes each
// element reads and how it converts them, the words of the style tables, and the image
// elements that each control draws. Pure functions over text, tested without a skin.
#pragma once

#include "MirlLintSkin.h"

#include <string>
#include <vector>

namespace mirllint {

// ---- Sections ----

// 1 to 6 for "Infoes" ... "Windows" written exactly, 0 otherwise.
unsigned long SectionType(const std::wstring &name);
// The section that name spells in another letter case, or null.
const wchar_t *SectionOfOtherCase(const std::wstring &name);
// A section a few letters away from name ("Colours" -> "Colors"), or empty.
std::wstring SimilarSection(const std::wstring &name);

// ---- Values ----

// The conversions of the element reader: text to a signed or unsigned 32-bit number, to a
// byte through a 16-bit number, to a boolean.
enum class Conversion { String, Int, UInt, Byte, Bool };

struct ValueProblem {
    unsigned long hresult = 0;
};

// Converts text the way the loader does (VariantChangeType); false with the code it fails with.
bool ConvertsAs(const std::wstring &text, Conversion conversion, ValueProblem &problem);
// The signed number the loader reads from text, as a Language block's "Id".
bool ConvertToInt(const std::wstring &text, long &value, ValueProblem &problem);
// "0x0409" and the like: the number a hexadecimal text was meant to be.
bool ReadHexadecimal(const std::wstring &text, unsigned long &value);
// What is wrong with an attribute value that doesn't convert; language says that it's the
// "Id" of a Language block.
std::wstring DescribeValueProblem(const Attr &attribute, Conversion conversion, const ValueProblem &problem,
                                  bool language = false);

// The attributes an element of a type reads, with their conversions, in the order it reads them.
struct ElementAttribute {
    const wchar_t *name;
    Conversion conversion;
};
std::vector<ElementAttribute> ElementAttributes(unsigned long type);

// ---- Template words ----

// The attribute a word belongs to, for messages: "Style", "ExStyle", "Align", "Layout".
enum class WordTable { Style, ExStyle, Align, Layout };

struct WordProblem {
    std::wstring word;        // as the parser sees it, blanks dropped
    std::wstring suggestion;  // the word meant, when there is a likely one
    std::wstring belongsTo;   // another attribute whose table has this exact word
};

// The words of a "WORD|WORD" value that match no row of the table.
std::vector<WordProblem> CheckWords(const std::wstring &text, WordTable table);
std::wstring DescribeWordProblem(const WordProblem &problem, WordTable table);
const wchar_t *WordTableName(WordTable table);
// The OR of the words' values, as the library computes it.
unsigned long WordValue(const std::wstring &text, WordTable table);

// ---- Classes ----

// Whether "Class" names a window the factory makes ("LISTBOX" included, which makes none).
bool IsKnownClass(const std::wstring &value);
// A class a few letters away, or empty.
std::wstring SimilarClass(const std::wstring &value);

// An attribute of a template that names an element, with the element the control takes when
// it is absent (null: nothing is taken).
struct ElementReference {
    const wchar_t *attribute;
    unsigned long type;
    const wchar_t *fallback;
};
// The references that every window reads, then those of the class.
std::vector<ElementReference> TemplateReferences(const std::wstring &windowClass);
// Image elements that a control of the class draws by their fixed names. A button also needs
// its common images when its style has BS_BACKIMGE.
std::vector<std::wstring> FixedImages(const std::wstring &windowClass, unsigned long style);
// Colour elements that a control of the class looks up by their fixed names, each falling back
// on the colour before it when absent.
std::vector<std::wstring> FixedColors(const std::wstring &windowClass);
// The image elements that a dialog's own controls, skinned in place by the application, take
// by their fixed names without a test (no template names them): check box, radio button,
// pressed push button, arrow.
std::vector<std::wstring> DialogControlImages();
// The names among them that only a skinned dialog reads: a skin that has one means dialogs.
bool IsDialogOnlyImage(const std::wstring &name);

// Whether some window reads a template attribute of this name (any letter case); if not,
// suggestion may name the attribute meant.
bool IsTemplateAttribute(const std::wstring &name, std::wstring &suggestion);

// Attributes whose value is a number or a boolean in any template.
bool IsIntegerAttribute(const std::wstring &name);
bool IsBooleanAttribute(const std::wstring &name);
// A number that GetInteger reads as written: decimal with an optional sign, or 0x and
// hexadecimal digits.
bool IsWellFormedInteger(const std::wstring &value);

// ---- Rules ----

// The name of every rule that a finding can carry, in alphabetical order.
const std::vector<std::wstring> &RuleNames();

// ---- Names ----

// The number of single-letter edits between two words, ignoring case.
size_t EditDistance(const std::wstring &a, const std::wstring &b);
// A text with control characters written as escapes, for messages.
std::wstring Visible(const std::wstring &text);

// Whether a link target is one the shell opens without running a program: http, https, mailto.
bool IsSafeUrl(const std::wstring &target);

} // namespace mirllint
