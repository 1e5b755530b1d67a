#include "support/recordedcall.h"

#include <cwchar>
#include <vector>

// A host of AI tools plug-ins for tests. The environment tells what it says:
//   TINDRA_TEST_PLUGINS  one plug-in a line, "id|name|description"; "?" for an id that cannot be had
//   TINDRA_TEST_COUNT    the number that it gives instead of the lines'
//   TINDRA_TEST_FILL     a character that fills every buffer to the end instead of a text
//   TINDRA_TEST_RESULT   what running a plug-in ends with

namespace {

using Plugin = std::vector<std::wstring>;

/// The variable's text, which is UTF-8 of at most three bytes a character.
std::wstring environment(const char *name) {
    const char *value = std::getenv(name);
    std::wstring wide;
    for (; value && *value; ++value) {
        const auto byte = static_cast<unsigned char>(*value);
        if (byte < 0x80)
            wide += static_cast<wchar_t>(byte);
        else if (byte < 0xC0)
            wide.back() = static_cast<wchar_t>((wide.back() << 6) | (byte & 0x3F));
        else
            wide += static_cast<wchar_t>(byte & (byte < 0xE0 ? 0x1F : 0x0F));
    }
    return wide;
}

std::vector<std::wstring> split(const std::wstring &text, wchar_t separator) {
    std::vector<std::wstring> parts(1);
    for (const wchar_t character : text) {
        if (character == separator)
            parts.emplace_back();
        else
            parts.back() += character;
    }
    return parts;
}

std::vector<Plugin> plugins() {
    std::vector<Plugin> list;
    const std::wstring text = environment("TINDRA_TEST_PLUGINS");
    if (text.empty())
        return list;
    for (const std::wstring &line : split(text, L'\n')) {
        list.push_back(split(line, L'|'));
        list.back().resize(3);
    }
    return list;
}

bool write(const std::wstring &text, wchar_t *buffer, unsigned size) {
    const std::wstring fill = environment("TINDRA_TEST_FILL");
    if (!fill.empty()) {
        std::wmemset(buffer, fill.front(), size);
        return true;
    }
    // Something stands there before a failure is noticed.
    buffer[0] = L'!';
    if (text == L"?" || text.size() >= size)
        return false;
    std::wmemcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}

bool writePart(const wchar_t *id, unsigned part, wchar_t *buffer, unsigned size) {
    for (const Plugin &plugin : plugins()) {
        if (plugin[0] == id)
            return write(plugin[part], buffer, size);
    }
    return false;
}

std::string numbered(const char *name, unsigned number) {
    return name + std::string(" ") + std::to_string(number);
}

} // namespace

EXPORTED bool SetAppInfo(const wchar_t *appName, const wchar_t *language) {
    recordCall("SetAppInfo " + narrow(appName) + " " + narrow(language));
    return true;
}

EXPORTED unsigned PluginCount() {
    recordCall("PluginCount");
    const char *count = std::getenv("TINDRA_TEST_COUNT");
    return count ? static_cast<unsigned>(std::strtoul(count, nullptr, 10))
                 : static_cast<unsigned>(plugins().size());
}

EXPORTED bool PluginId(unsigned index, wchar_t *buffer, unsigned size) {
    recordCall(numbered("PluginId", index) + " " + std::to_string(size));
    const std::vector<Plugin> list = plugins();
    return write(index < list.size() ? list[index][0] : L"?", buffer, size);
}

EXPORTED bool PluginName(const wchar_t *id, wchar_t *buffer, unsigned size) {
    recordCall(numbered("PluginName", size) + " " + narrow(id));
    return writePart(id, 1, buffer, size);
}

EXPORTED bool PluginDescription(const wchar_t *id, wchar_t *buffer, unsigned size) {
    recordCall(numbered("PluginDescription", size) + " " + narrow(id));
    return writePart(id, 2, buffer, size);
}

EXPORTED unsigned ExecutePlugin(const wchar_t *id, const wchar_t *arguments) {
    recordCall("ExecutePlugin " + narrow(id) + " " + narrow(arguments));
    const char *result = std::getenv("TINDRA_TEST_RESULT");
    return result ? static_cast<unsigned>(std::strtoul(result, nullptr, 10)) : 0;
}
