#pragma once

/// Keys of the fields in a document's stored record. They are stored and must not change.
namespace Norlis::PDF::Cloud::RecordKey {

inline constexpr auto filePath = "file_path";
inline constexpr auto localFileHash = "local_file_hash";
inline constexpr auto fileHash = "file_hash";
inline constexpr auto lastSyncFileHash = "last_sync_file_hash";
inline constexpr auto fileName = "file_name";
inline constexpr auto isPrivate = "is_private"; ///< a number that fits into an int
inline constexpr auto downloadUrl = "download_url";
inline constexpr auto createdAt = "created_at";
inline constexpr auto modifiedTime = "modified_time"; ///< read, but never written
inline constexpr auto lifetime = "lifetime_in_sec";   ///< a number that fits into an int
inline constexpr auto cloudSize = "cloud_size";       ///< a number that fits into 32 bits without a sign
inline constexpr auto previewPath = "preview_path";

} // namespace Norlis::PDF::Cloud::RecordKey
