// Still-image deletion (one by name, or all) against the state folder, and its
// wire handler (524/525).
#include "still_images.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "dispatch.h"
#include "sim_log.h"
#include "stream_model.h"

namespace sim {

StillDeleteOutcome DeleteStillImages(Appliance& appliance, const std::string& requestedName) {
  namespace fs = std::filesystem;
  StillDeleteOutcome outcome;
  StreamModel& streams = appliance.family<StreamModel>();
  const fs::path folder = appliance.stillImageDir();
  // Clients send names completed with the appliance's still-image folder; it maps onto ours.
  std::string fileName = requestedName;
  const std::string standardFolder = SMGR_STILL_IMAGE_FOLDER;
  if (fileName.rfind(standardFolder, 0) == 0) fileName = fileName.substr(standardFolder.size());

  auto removeOne = [&](const fs::path& path) {
    const std::string base = path.filename().string();
    if (streams.usesStillImage(base)) {
      ++outcome.skipped;
      return false;
    }
    if (unlink(path.c_str()) != 0) {
      outcome.lastErrno = errno;
      ++outcome.skipped;
      return false;
    }
    ++outcome.deleted;
    return true;
  };

  if (fileName == SMGRPROT_STILL_DELETE_ALL_KEYWORD) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
      if (entry.is_regular_file(error)) removeOne(entry.path());
    }
    if (outcome.lastErrno) outcome.result = SMGR_ERROR_STILL_IMAGE_FILE_ACCESS;
    return outcome;
  }

  if (fileName.empty() || fileName.find('/') != std::string::npos || fileName == "." || fileName == "..") {
    outcome.result = SMGR_ERROR_INVALID_FILENAME_PATH;
    return outcome;
  }
  std::error_code error;
  const fs::path path = folder / fileName;
  if (!fs::is_regular_file(path, error)) {
    outcome.result = SMGR_ERROR_NO_SUCH_STILL_IMAGE;
    return outcome;
  }
  if (streams.usesStillImage(fileName)) {
    outcome.result = SMGR_ERROR_STILL_IMAGE_IN_USE;
    outcome.skipped = 1;
    return outcome;
  }
  if (!removeOne(path)) outcome.result = SMGR_ERROR_STILL_IMAGE_FILE_ACCESS;
  return outcome;
}

namespace {

void OnStillDelete(Context& context, const Request& request, Reply& reply) {
  auto message = request.as<SMGRPROT_MSG_STILL_DELETE_REQ>();
  auto* response = reply.as<SMGRPROT_MSG_STILL_DELETE_RSP>();
  const char* name = message.Data.szFileName;
  if (!memchr(name, '\0', sizeof message.Data.szFileName)) {
    response->Data.Result = SMGR_ERROR_INVALID_PARAMETERS;
    return;
  }
  StillDeleteOutcome outcome = DeleteStillImages(context.appliance(), name);
  response->Data.Result = outcome.result;
  response->Data.nDeletedCount = outcome.deleted;
  response->Data.nNotDeletedCount = outcome.skipped;
  response->Data.iErrno = outcome.lastErrno;
  SIM_LOG_INFO("still image delete \"%s\": result %u, %u deleted, %u skipped", name, outcome.result,
               outcome.deleted, outcome.skipped);
}

const FamilyRegistration kStillImages{
    "still images",
    {
        {SMGRPROT_STILL_DELETE_REQ, "still delete", sizeof(SMGRPROT_MSG_STILL_DELETE_REQ),
         SMGRPROT_STILL_DELETE_RSP, sizeof(SMGRPROT_MSG_STILL_DELETE_RSP), OnStillDelete},
    }};

}  // namespace
}  // namespace sim
