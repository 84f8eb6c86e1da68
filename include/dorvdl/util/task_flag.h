/// @file
/// The bits of a download task's `task_flags`.
#ifndef DORVDL_UTIL_TASK_FLAG_H_
#define DORVDL_UTIL_TASK_FLAG_H_

#include <cstdint>

/// What a task downloads by, one bit each. They are stored in the database and travel in requests;
/// the bits between them belong to nobody.
namespace dorvdl::task_flag {

inline constexpr std::int32_t kNzb = 0x2;          ///< Usenet, from an NZB file
inline constexpr std::int32_t kBt = 0x4;           ///< BitTorrent, from a torrent or a magnet link
inline constexpr std::int32_t kFtps = 0x10;        ///< FTP over TLS
inline constexpr std::int32_t kSftp = 0x20;        ///< SSH file transfer
inline constexpr std::int32_t kEmule = 0x80;       ///< eMule, from an eD2k link
inline constexpr std::int32_t kHttp = 0x200;       ///< HTTP
inline constexpr std::int32_t kHttps = 0x400;      ///< HTTP over TLS
inline constexpr std::int32_t kFtp = 0x800;        ///< FTP
inline constexpr std::int32_t kThunder = 0x1000;   ///< Thunder link
inline constexpr std::int32_t kFlashget = 0x2000;  ///< FlashGet link
inline constexpr std::int32_t kQqdl = 0x4000;      ///< QQDL link

}  // namespace dorvdl::task_flag

#endif  // DORVDL_UTIL_TASK_FLAG_H_
