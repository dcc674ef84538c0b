#include "platform/PicturesOnly.h"

#include <objbase.h>
#include <objidl.h>

namespace melvorin {
namespace {

// Static pictures of the system, which run no program: metafile, bitmap, enhanced metafile.
constexpr DWORD kPictures[] = {0x00000315, 0x00000316, 0x00000319};

bool isPicture(const CLSID& kind) {
    CLSID known{0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    for (const DWORD number : kPictures) {
        known.Data1 = number;
        if (::IsEqualCLSID(kind, known))
            return true;
    }
    // Of a picture that the control makes itself.
    return ::IsEqualCLSID(kind, CLSID{});
}

// Interfaces of the system are never deleted through their pointers.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class PicturesOnly final : public IRichEditOleCallback {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** found) override {
        const bool isKnown =
            ::IsEqualIID(wanted, IID_IUnknown) || ::IsEqualIID(wanted, IID_IRichEditOleCallback);
        *found = isKnown ? static_cast<IRichEditOleCallback*>(this) : nullptr;
        return isKnown ? S_OK : E_NOINTERFACE;
    }
    // Lives as long as the program.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE GetNewStorage(IStorage** storage) override {
        *storage = nullptr;
        ILockBytes* bytes = nullptr;
        HRESULT result = ::CreateILockBytesOnHGlobal(nullptr, TRUE, &bytes);
        if (FAILED(result))
            return result;
        constexpr DWORD mode = STGM_SHARE_EXCLUSIVE | STGM_CREATE | STGM_READWRITE;
        result = ::StgCreateDocfileOnILockBytes(bytes, mode, 0, storage);
        bytes->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE QueryInsertObject(CLSID* kind, IStorage*, LONG) override {
        return kind != nullptr && isPicture(*kind) ? S_OK : E_ACCESSDENIED;
    }
    HRESULT STDMETHODCALLTYPE DeleteObject(IOleObject*) override { return S_OK; }
    // Nothing is activated in the window.
    HRESULT STDMETHODCALLTYPE GetInPlaceContext(IOleInPlaceFrame**, IOleInPlaceUIWindow**,
                                                OLEINPLACEFRAMEINFO*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ShowContainerUI(WINBOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(WINBOOL) override { return E_NOTIMPL; }
    // What comes in comes through the program's own paste, which looks at it first.
    HRESULT STDMETHODCALLTYPE QueryAcceptData(IDataObject*, CLIPFORMAT*, DWORD, WINBOOL,
                                              HGLOBAL) override {
        return E_ACCESSDENIED;
    }
    HRESULT STDMETHODCALLTYPE GetClipboardData(CHARRANGE*, DWORD, IDataObject**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDragDropEffect(WINBOOL, DWORD, DWORD* effect) override {
        if (effect != nullptr)
            *effect = DROPEFFECT_NONE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetContextMenu(WORD, IOleObject*, CHARRANGE*, HMENU*) override {
        return E_NOTIMPL;
    }
};
#pragma GCC diagnostic pop

}  // namespace

IRichEditOleCallback* picturesOnly() {
    static PicturesOnly answers;
    return &answers;
}

}  // namespace melvorin
