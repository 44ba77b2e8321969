#include "RegistryKey.h"

#include "WideText.h"

#include <utility>
#include <vector>

namespace Brindle {

RegistryKey RegistryKey::Open(HKEY root, const QString& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, Wide(path), 0, KEY_READ, &key) != ERROR_SUCCESS)
        key = nullptr;
    return RegistryKey(key);
}

RegistryKey RegistryKey::Create(HKEY root, const QString& path) {
    HKEY key = nullptr;
    if (RegCreateKeyExW(root, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        key = nullptr;
    return RegistryKey(key);
}

RegistryKey::~RegistryKey() {
    if (key_ != nullptr)
        RegCloseKey(key_);
}

RegistryKey::RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}

QString RegistryKey::Text(const QString& name) const {
    if (key_ == nullptr)
        return {};
    DWORD size = 0;
    if (RegGetValueW(key_, nullptr, Wide(name), RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return {};
    // Expanded, a text can be longer than it was said to be.
    for (;;) {
        std::vector<wchar_t> text(size / sizeof(wchar_t) + 1);
        size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
        const LSTATUS status = RegGetValueW(key_, nullptr, Wide(name), RRF_RT_REG_SZ, nullptr, text.data(), &size);
        if (status == ERROR_SUCCESS)
            return QString::fromWCharArray(text.data());
        if (status != ERROR_MORE_DATA)
            return {};
    }
}

bool RegistryKey::Write(const QString& name, quint32 value) const {
    return key_ != nullptr && RegSetValueExW(key_, Wide(name), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                                             sizeof value) == ERROR_SUCCESS;
}

} // namespace Brindle
