#pragma once
// COM for the Windows backends (WIC here, Media Foundation in the stream):
// an owning pointer to an interface, and COM started once per thread.
#include <windows.h>
#include <objbase.h>

namespace vx::imaging::win32 {

template <typename T>
struct ComPtr {
    T* p = nullptr;
    ComPtr() = default;
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ~ComPtr() { reset(); }
    void reset()
    {
        if (p)
            p->Release();
        p = nullptr;
    }
    // For a call that hands out a new interface; the old one is released.
    T** out()
    {
        reset();
        return &p;
    }
    T* operator->() const { return p; }
};

// COM on the calling thread, multithreaded, once; true when usable (also
// when the thread had it already in another mode).
inline bool comReady()
{
    thread_local const bool ready = [] {
        const HRESULT hr = ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        return SUCCEEDED(hr) || hr == RPC_E_CHANGED_MODE;
    }();
    return ready;
}

} // namespace vx::imaging::win32
