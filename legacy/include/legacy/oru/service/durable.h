// Durable files: a file replaced so that a crash leaves either the old or
// the new content, never a mix, and the new one survives once the call
// returned. The token file of the service, created private.
//
// Plain functions; any thread.
#ifndef LEGACY_ORU_SERVICE_DURABLE_H
#define LEGACY_ORU_SERVICE_DURABLE_H

#include <string>

#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {
namespace Service {

// Replaces the file at path by content: a temporary file in the same folder,
// written and fsynced, renamed over path, then the folder fsynced. The file
// keeps the old one's mode. False with the reason in error; the old file then
// stays as it was.
ORU_API bool ReplaceFile(std::string const& path, std::string const& content, std::string& error);

// The token in the file at path; when the file is absent, a new random token
// is written there first (mode 0600, its folder made 0700 if missing). False
// with the reason when the file cannot be read or made, or holds no token.
ORU_API bool LoadToken(std::string const& path, std::string& token, std::string& error);

// The token file a user gets when naming none:
// $XDG_CONFIG_HOME/oru/token, or ~/.config/oru/token.
ORU_API std::string DefaultTokenFile();

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy

#endif
