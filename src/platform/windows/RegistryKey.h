#pragma once

#include <QString>

#include <optional>
#include <windows.h>

namespace Brindle {

/// An open key of the registry, closed with the object.
class RegistryKey {
public:
    /// Opens a key for reading, without creating it. Check `IsOpen`.
    static RegistryKey Open(HKEY root, const QString& path);
    /// Opens a key for writing and makes it, with its parents, when it is missing. Check `IsOpen`.
    static RegistryKey Create(HKEY root, const QString& path);

    ~RegistryKey();
    RegistryKey(RegistryKey&& other) noexcept;
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    bool IsOpen() const { return key_ != nullptr; }
    /// A text value with its environment variables expanded; the key's default value when the name is empty. Nothing
    /// when the key is not open, or holds no such text.
    std::optional<QString> Text(const QString& name) const;
    /// A 32-bit number; false when it cannot be written.
    bool Write(const QString& name, quint32 value) const;

private:
    explicit RegistryKey(HKEY key) : key_(key) {}

    HKEY key_;
};

} // namespace Brindle
