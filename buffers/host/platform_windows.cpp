// SPDX-License-Identifier: MIT
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// The COM headers need windows.h first.
#include <oleauto.h>

#include <cstdio>
#include <cwchar>
#include <iterator>
#include <optional>

#include "buffers/host/available_memory.h"
#include "buffers/host/platform.h"

namespace omnar::platform {
namespace {

/// Releases a COM object at the end of its scope.
template <class Interface>
struct Owned {
    Interface* object = nullptr;

    Owned() = default;
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() {
        if (object != nullptr) object->Release();
    }
    Interface* operator->() const { return object; }
};

// COM has no fields for the numbers. In the description, readers of the error see them.
constexpr wchar_t description[] = L"kind %ld, line %ld, further %ld";

}  // namespace

int hasMmx() { return IsProcessorFeaturePresent(PF_MMX_INSTRUCTIONS_AVAILABLE); }

bool hasCancelKey() { return true; }
bool cancelKeyDown() { return GetAsyncKeyState(VK_ESCAPE) != 0; }

unsigned availableMegabytes() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (GlobalMemoryStatusEx(&status) == 0) return wholeMegabytes(std::nullopt);
    return wholeMegabytes(status.ullAvailPhys);
}

bool setErrorInfo(const ErrorInfo& info) {
    wchar_t source[sizeof info.source];
    MultiByteToWideChar(CP_UTF8, 0, info.source, -1, source, static_cast<int>(std::size(source)));
    wchar_t text[96];
    std::swprintf(text, std::size(text), description, info.kind, info.line, info.further);

    Owned<ICreateErrorInfo> creator;
    Owned<IErrorInfo> created;
    return SUCCEEDED(CreateErrorInfo(&creator.object)) && SUCCEEDED(creator->SetSource(source)) &&
           SUCCEEDED(creator->SetDescription(text)) &&
           SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&created.object))) &&
           SUCCEEDED(SetErrorInfo(0, created.object));
}

bool takeErrorInfo(ErrorInfo* info) {
    Owned<IErrorInfo> pending;
    if (GetErrorInfo(0, &pending.object) != S_OK) return false;
    *info = {};
    BSTR text = nullptr;
    if (SUCCEEDED(pending->GetSource(&text)) && text != nullptr) {
        WideCharToMultiByte(CP_UTF8, 0, text, -1, info->source, static_cast<int>(std::size(info->source)), nullptr,
                            nullptr);
        info->source[std::size(info->source) - 1] = '\0';
        SysFreeString(text);
    }
    text = nullptr;
    if (SUCCEEDED(pending->GetDescription(&text)) && text != nullptr) {
        std::swscanf(text, description, &info->kind, &info->line, &info->further);
        SysFreeString(text);
    }
    return true;
}

}  // namespace omnar::platform
