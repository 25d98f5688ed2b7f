// The settings file reader on any bytes: it takes what makes sense, and what it took survives
// being written and read again unchanged.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "frame/settings_document.h"

using vellumar::SettingsDocument;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  SettingsDocument doc = SettingsDocument::Parse(text);
  const std::string written = doc.Serialize();
  SettingsDocument again = SettingsDocument::Parse(written);
  if (again.Serialize() != written) {
    std::fprintf(stderr, "settings changed on a second reading\n");
    std::abort();
  }
  for (const auto& section : doc.sections()) {
    for (const auto& entry : section.entries) {
      auto value = again.Get(section.name, entry.key);
      if (!value || *value != entry.value) {
        std::fprintf(stderr, "key lost or changed on a second reading\n");
        std::abort();
      }
    }
  }
  return 0;
}
