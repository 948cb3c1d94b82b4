// What every object of the system's accessibility interface needs, whatever it stands for.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <atomic>

namespace platform {

// Lives as long as somebody refers to it, at first its maker. Any thread. No scripts, no help and
// no selection; names are not for others to set.
class PlainAccessible : public IAccessible {
 public:
  PlainAccessible() = default;
  PlainAccessible(const PlainAccessible&) = delete;
  PlainAccessible& operator=(const PlainAccessible&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** out) final {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (wanted != __uuidof(IUnknown) && wanted != __uuidof(IDispatch) &&
        wanted != __uuidof(IAccessible)) {
      return E_NOINTERFACE;
    }
    *out = static_cast<IAccessible*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) final {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) final {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) final {
    return E_NOTIMPL;
  }

  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* help) final {
    *help = nullptr;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG* topic) final {
    *file = nullptr;
    *topic = 0;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* shortcut) final {
    *shortcut = nullptr;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* selection) final {
    V_VT(selection) = VT_EMPTY;
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) final { return DISP_E_MEMBERNOTFOUND; }

 protected:
  virtual ~PlainAccessible() = default;

 private:
  std::atomic<ULONG> references_{1};
};

}  // namespace platform
