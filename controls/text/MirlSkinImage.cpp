#include "MirlImage.h"

#include <new>

namespace {

// A read-only view of a picture's stream that never reads past its end. Wine's stream on an
// HGLOBAL copies from beyond the block when a decoder has seeked past the end (a damaged chunk
// length does that), where Windows reads nothing; a skin's damaged picture must not end the
// program on either.
class BoundedStream : public IStream {
public:
    static IStream *Wrap(IStream *inner)
    {
        STATSTG stat = {};
        if (inner == nullptr || FAILED(inner->Stat(&stat, STATFLAG_NONAME))) {
            return nullptr;
        }
        BoundedStream *stream = new (std::nothrow) BoundedStream(inner, stat.cbSize.QuadPart);
        return stream;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void **object) override
    {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (riid == IID_IUnknown || riid == IID_ISequentialStream || riid == IID_IStream) {
            *object = static_cast<IStream *>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_References)); }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const LONG left = ::InterlockedDecrement(&m_References);
        if (left == 0) {
            delete this;
        }
        return static_cast<ULONG>(left);
    }

    HRESULT STDMETHODCALLTYPE Read(void *buffer, ULONG count, ULONG *read) override
    {
        if (read != nullptr) {
            *read = 0;
        }
        LARGE_INTEGER zero = {};
        ULARGE_INTEGER position = {};
        HRESULT hr = m_Inner->Seek(zero, STREAM_SEEK_CUR, &position);
        if (FAILED(hr)) {
            return hr;
        }
        if (position.QuadPart >= m_Size) {
            return count == 0 ? S_OK : S_FALSE;
        }
        const ULONGLONG left = m_Size - position.QuadPart;
        const ULONG allowed = left < count ? static_cast<ULONG>(left) : count;
        return m_Inner->Read(buffer, allowed, read);
    }
    HRESULT STDMETHODCALLTYPE Write(const void *, ULONG, ULONG *written) override
    {
        if (written != nullptr) {
            *written = 0;
        }
        return STG_E_ACCESSDENIED;
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER *position) override
    {
        return m_Inner->Seek(move, origin, position);
    }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return STG_E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream *, ULARGE_INTEGER, ULARGE_INTEGER *, ULARGE_INTEGER *) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Revert() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override
    {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override
    {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG *stat, DWORD flags) override { return m_Inner->Stat(stat, flags); }
    HRESULT STDMETHODCALLTYPE Clone(IStream **clone) override
    {
        if (clone == nullptr) {
            return E_POINTER;
        }
        *clone = nullptr;
        IStream *inner = nullptr;
        HRESULT hr = m_Inner->Clone(&inner);
        if (FAILED(hr) || inner == nullptr) {
            return FAILED(hr) ? hr : E_FAIL;
        }
        *clone = new (std::nothrow) BoundedStream(inner, m_Size);
        inner->Release();
        return *clone != nullptr ? S_OK : E_OUTOFMEMORY;
    }

private:
    BoundedStream(IStream *inner, ULONGLONG size) : m_Inner(inner), m_Size(size) {}
    virtual ~BoundedStream() = default;

    LONG m_References = 1;
    IStreamPtr m_Inner;
    ULONGLONG m_Size;
};

} // namespace

namespace MIRL {

Gdiplus::Bitmap *LoadElementBitmap(const MirlUiElementImage *element)
{
    if (element == nullptr) {
        return NULL;
    }
    return LoadPackageBitmap(element->GetFileName());
}

Gdiplus::Bitmap *LoadPackageBitmap(const wchar_t *fileName)
{
    if (fileName == nullptr) {
        return NULL;
    }
    MirlUI *ui = MirlUI::Instance();
    if (ui == NULL) {
        return NULL;
    }
    IStreamPtr stream = ui->ExtractFile(fileName);
    if (stream == nullptr) {
        return NULL;
    }
    IStreamPtr bounded(BoundedStream::Wrap(stream), false);
    if (bounded == nullptr) {
        return NULL;
    }
    Gdiplus::Bitmap *bitmap = Gdiplus::Bitmap::FromStream(bounded);
    if (bitmap != NULL && bitmap->GetLastStatus() != Gdiplus::Ok) {
        // A file that isn't a picture counts as no picture.
        delete bitmap;
        bitmap = NULL;
    }
    return bitmap;
}

Gdiplus::Bitmap *LoadSkinBitmap(const wchar_t *elementName)
{
    MirlUI *ui = MirlUI::Instance();
    if (ui == NULL || elementName == NULL) {
        return NULL;
    }
    return LoadElementBitmap(static_cast<MirlUiElementImage *>(ui->GetUiElement(elementName, UI_ELEMENT_IMAGE)));
}

Gdiplus::ARGB ColorToArgb(const MirlUiElementColor *color)
{
    return (static_cast<Gdiplus::ARGB>(color->A()) << 24) | (static_cast<Gdiplus::ARGB>(color->R()) << 16) |
           (static_cast<Gdiplus::ARGB>(color->G()) << 8) | color->B();
}

} // namespace MIRL
