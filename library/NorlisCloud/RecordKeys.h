#pragma once

/// Keys of the fields in a document's stored record. They are stored and must not change.
namespace Norlis::PDF::Cloud::RecordKey {

inline constexpr auto filePath = "file_path";                   ///< path of the local copy
inline constexpr auto localFileHash = "local_file_hash";        ///< MD5 of the local copy
inline constexpr auto fileHash = "file_hash";                   ///< MD5 of the cloud copy
inline constexpr auto lastSyncFileHash = "last_sync_file_hash"; ///< MD5 of both when they were last the same
inline constexpr auto fileName = "file_name";                   ///< name in the cloud
inline constexpr auto isPrivate = "is_private";                 ///< "0" or "1"; fits into an int
inline constexpr auto downloadUrl = "download_url";             ///< empty when there is none
inline constexpr auto createdAt = "created_at";                 ///< a time as Qt::TextDate
inline constexpr auto modifiedTime = "modified_time";           ///< a time as Qt::TextDate; read, but never written
inline constexpr auto lifetime = "lifetime_in_sec";             ///< seconds; fits into an int
inline constexpr auto cloudSize = "cloud_size";                 ///< bytes; fits into 32 bits without a sign when read
inline constexpr auto previewPath = "preview_path";             ///< paths of the pictures, each followed by ';'

} // namespace Norlis::PDF::Cloud::RecordKey
