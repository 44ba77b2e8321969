#include "platform/windows/RegistryKey.h"

#include "platform/windows/WideText.h"

#include <utility>
#include <vector>

namespace Brindle {

namespace {

// In characters; a registry holds commands and versions, no documents.
constexpr size_t longestText = 1 << 20;

} // namespace

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

std::optional<QString> RegistryKey::Text(const QString& name) const {
    if (key_ == nullptr)
        return std::nullopt;
    // Expanded, a text can be longer than the system says beforehand.
    LSTATUS status = ERROR_MORE_DATA;
    for (size_t room = 256; status == ERROR_MORE_DATA && room <= longestText; room *= 2) {
        std::vector<wchar_t> text(room);
        DWORD size = static_cast<DWORD>(room * sizeof(wchar_t));
        status = RegGetValueW(key_, nullptr, Wide(name), RRF_RT_REG_SZ, nullptr, text.data(), &size);
        if (status == ERROR_SUCCESS)
            return QString::fromWCharArray(text.data());
    }
    return std::nullopt;
}

bool RegistryKey::Write(const QString& name, quint32 value) const {
    return key_ != nullptr && RegSetValueExW(key_, Wide(name), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                                             sizeof value) == ERROR_SUCCESS;
}

} // namespace Brindle
