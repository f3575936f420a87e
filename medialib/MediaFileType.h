#pragma once

namespace kivo::tunehive {

// The class of a local file by its extension. Plain numbers: they are keys of a table and cross
// contracts. 8 belongs to no extension; from 100 on stand the newer formats (NewerFormats.h).
enum MediaFileType : int {
    kNoFileType = -1,
    kFileMp3 = 0,
    kFileWma = 1,
    kFileWmv = 2,
    kFileWav = 3,
    kFileAsf = 4,
    kFileMidi = 5,
    kFileAvi = 6,
    kFileMpeg = 7,
    kFileRm = 9,
    kFileRmvb = 10,
    kFileMp4 = 11,
    kFileApe = 12,
    kFileAsx = 13,
    kFileM3u = 14,
};

} // namespace kivo::tunehive
