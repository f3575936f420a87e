#pragma once

namespace kivo::ui {

// What a row hears through OnListEvent. Any other number goes to the base.
enum class RowEvent : int {
    DoubleClick = 515,
    Activate = 4024,
    Delete = 4032,
    FilesDropped = 4104, // The paths are in the list's dropped-file list.
    DragOver = 4105,     // The row answers by its accepts-drop field.
    DataDropped = 4106,  // The text is the drag text.
};

} // namespace kivo::ui
