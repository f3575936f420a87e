#pragma once

#include "tests/page/Stage.h"

#include <array>
#include <random>
#include <string>
#include <vector>

namespace kivo::test {

// A user who can't sit still: plays, skips, adds, removes, drags and rearranges at random, by mouse
// and keys on the real page. Thread: user interface.
class Hand {
public:
    // `files` are what it may add; `folder` holds some of them.
    Hand(Stage& stage, std::vector<std::string> files, std::string folder, unsigned seed);

    void Act();     // Does one thing, the next by chance.
    void CleanUp(); // Stops, and removes every track and every group that can be removed.

    struct Count {
        const char* name;
        int times;
    };
    [[nodiscard]] std::vector<Count> GetCounts() const;

private:
    struct Deed {
        const char* name;
        int weight;
        void (Hand::*run)();
    };
    static const Deed kDeeds[];

    void PlayRow();
    void Skip();
    void PressKeys();
    void Seek();
    void AddFiles();
    void AddFolder();
    void DropFiles();
    void RemoveRows();
    void DragRows();
    void OpenMenu();
    void PressButton();
    void TurnWheel();
    void MoveSplitter();
    void Resize();

    [[nodiscard]] int Pick(int count);
    [[nodiscard]] std::vector<QModelIndex> GetTracks() const; // On the page.
    [[nodiscard]] QPoint PickPlace();
    void Click(const QPoint& place, Qt::KeyboardModifiers modifiers = {});

    Stage& stage_;
    std::vector<std::string> files_;
    std::string folder_;
    std::mt19937 chance_;
    std::vector<int> counts_;
};

} // namespace kivo::test
