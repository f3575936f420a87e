#pragma once

#include "host/ContactRows.h"

#include <map>

namespace kivo::host {

// The rows of the contacts' page: who asks, who is there, who isn't, each below its heading.
// Thread: user interface.
class ContactList final : public ui::CSkinList {
public:
    explicit ContactList(const ContactCommands& commands); // Borrowed.
    ~ContactList() override;                               // Frees the rows that don't show, too.

    // Rows of the same people stay, with selection and place.
    void Show(const Contacts& contacts);

    ui::IMenu* GetBlankAreaMenu() override;
    void DoMenuCommand(ui::IMenu* entry) override;

private:
    struct Rows;
    const ContactCommands& commands_;
    std::unique_ptr<Rows> rows_;
};

} // namespace kivo::host
