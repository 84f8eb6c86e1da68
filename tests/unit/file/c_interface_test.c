/* Compiled as strict C: every C header stands on its own feet, declares what C programs call, and
 * the names link without C++'s decoration. */
#include <dorv/cgi.h>
#include <dorv/credentials.h>
#include <dorv/exec.h>
#include <dorv/hash.h>
#include <dorv/notification.h>
#include <dorv/quota.h>
#include <dorv/user.h>
#include <dorv/volume.h>
#include <dorvdl/file.h>

int (*const get_real_path_from_c)(char*, int) = GetTmpDownloadDirRealPath;
int (*const get_folder_from_c)(char*, int) = GetTmpDownloadDir;
int (*const get_volume_from_c)(char*, size_t) = GetTmpDownloadDirVol;
int (*const check_space_from_c)(void) = TmpVolumeSpaceCheck;
int (*const remove_from_c)(const char*, int) = RemoveTaskTemp;
int (*const check_quota_from_c)(uid_t, const char*, unsigned long long) = DORVDLQuotaCheck;

int (*const init_credentials_from_c)(const char*, int) = InitCredentialsByName;
int (*const get_real_name_from_c)(const char*, char*, int) = VLIBUserRealNameGet;
int (*const is_admin_from_c)(uid_t, int) = VLIBGroupIsAdminGroupMemByUid;
VLIBSZHASH* (*const alloc_hash_from_c)(int) = VLIBCSzHashAlloc;
int (*const set_value_from_c)(VLIBSZHASH**, const char*, const char*) = VLIBCSzHashSetValue;
void (*const free_hash_from_c)(VLIBSZHASH*) = VLIBCSzHashFree;
int (*const notify_from_c)(const char*, const char*, const char*,
                           VLIBSZHASH*) = DORVSendPersonalNotifiction;
int (*const init_texts_from_c)(const char*, DorvCgiContext*) = DorvCgiInit;
int (*const load_text_from_c)(DorvCgiContext*, const char*, int) = DorvCgiLoadText;
const char* (*const get_text_from_c)(DorvCgiContext*, const char*, const char*) = DorvCgiGetText;
void (*const free_texts_from_c)(DorvCgiContext*) = DorvCgiFree;
int (*const parse_volume_from_c)(const char*, DorvVolumeInfo*) = VolumePathParseEx;
int (*const exec_from_c)(const char*, const char*, const char*, const char*,
                         const char*) = VLIBCExec;
int (*const execl_from_c)(const char*, int, const char*, ...) = VLIBCExecl;
int (*const quota_from_c)(uid_t, const char*, unsigned long long) = DORVQuotaIsEnough;

_Static_assert(offsetof(DorvVolumeInfo, path) == 0, "the volume's path leads its record");
_Static_assert(sizeof(((DorvVolumeInfo*)0)->path) == 4096, "a path of any length fits");
