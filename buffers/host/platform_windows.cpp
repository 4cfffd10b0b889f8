// SPDX-License-Identifier: MIT
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// The COM headers need the line above first.
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
struct Held {
    Interface* object = nullptr;

    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() {
        if (object != nullptr) {
            object->Release();
        }
    }
    Interface* operator->() const { return object; }
};

// The numbers travel in the description, where a reader of the error sees them, too.
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

    Held<ICreateErrorInfo> maker;
    Held<IErrorInfo> made;
    return SUCCEEDED(CreateErrorInfo(&maker.object)) && SUCCEEDED(maker->SetSource(source)) &&
           SUCCEEDED(maker->SetDescription(text)) &&
           SUCCEEDED(maker->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&made.object))) &&
           SUCCEEDED(SetErrorInfo(0, made.object));
}

bool takeErrorInfo(ErrorInfo* info) {
    Held<IErrorInfo> waiting;
    if (GetErrorInfo(0, &waiting.object) != S_OK) {
        return false;
    }
    *info = {};
    BSTR text = nullptr;
    if (SUCCEEDED(waiting->GetSource(&text)) && text != nullptr) {
        WideCharToMultiByte(CP_UTF8, 0, text, -1, info->source, static_cast<int>(std::size(info->source)), nullptr,
                            nullptr);
        info->source[std::size(info->source) - 1] = '\0';
        SysFreeString(text);
    }
    text = nullptr;
    if (SUCCEEDED(waiting->GetDescription(&text)) && text != nullptr) {
        std::swscanf(text, description, &info->kind, &info->line, &info->further);
        SysFreeString(text);
    }
    return true;
}

}  // namespace omnar::platform
