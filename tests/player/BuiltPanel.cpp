#include "tests/player/BuiltPanel.h"

#include "platform/base/TimerService.h"
#include "shell/contracts/ui/SkinManager.h"

namespace kivo::test {

namespace {

constexpr const char* kBuildFile = R"(
<build><node key="KIVO Plugins TuneHiveWindow PlayerPanel">
  <panel id="ControlPanel" dock="top" height="60">
    <button id="PrevBtn"/><button id="PlayBtn"/><button id="PauseBtn"/><button id="NextBtn"/>
    <button id="StopBtn"/><button id="VolBtn"/><button id="LyricBtn"/><button id="PopBtn"/>
  </panel>
  <panel id="StatePanel" dock="bottom" height="22"><label id="StateLab" dock="fill"/></panel>
</node></build>)";

} // namespace

BuiltPanel::BuiltPanel()
{
    TimerService::Get().SetClock([this] { return now_; });
    ui::CSkinManager::GetInstance()->IncludeBuildText(kBuildFile);
    manager.AddPlayer(&player);
    static_cast<void>(manager.GetPlayer(u"any")); // From here on it is the current one.
    Build();
    panel->SetBounds(0, 0, 10, 60); // As the page lays it out, without the state line.
}

BuiltPanel::~BuiltPanel()
{
    panel.reset();
    host.ReleasePosted();
    manager.Destroy();
    TimerService::Get().SetClock({});
}

void BuiltPanel::Report(int state)
{
    player.state = state;
    page.playState = state;
    manager.NotifyState(state);
}

void BuiltPanel::Pass(int milliseconds)
{
    now_ += milliseconds;
    TimerService::Get().RunDue();
}

void BuiltPanel::PassSeconds(int seconds)
{
    for (int i = 0; i < seconds; ++i)
        Pass(1'000);
}

void BuiltPanel::Start(double seconds)
{
    Report(9);
    player.duration = seconds;
    Report(3);
}

void BuiltPanel::PlayRow(int row, double seconds)
{
    page.mark = row;
    player.url = page.Current();
    Start(seconds);
}

TracksPanel::TracksPanel()
{
    for (const char* name : {"a.mp3", "b.mp3", "c.mp3"})
        page.rows.push_back(WriteTrack(name));
}

String TracksPanel::WriteTrack(const std::string& name) const
{
    folder.Write(name, "sound");
    return folder.GetPath(name);
}

std::string TracksPanel::TakeCalls()
{
    std::string text;
    for (const String& call : player.TakeCalls()) {
        std::string word(call.begin(), call.end());
        for (std::size_t row = 0; row < page.rows.size(); ++row)
            if (call == u"set " + page.rows[row])
                word = "set " + std::to_string(row);
        text += (text.empty() ? "" : " ") + word;
    }
    if (!page.paneModes.empty())
        text += (text.empty() ? "pane " : " pane ") + std::to_string(page.paneModes.back());
    page.paneModes.clear();
    return text;
}

} // namespace kivo::test
