// Output sinks, the trace list and the log calls.
#include "core/log/Log.h"
#include "core/log/TraceList.h"
#include "core/output/StdioWritable.h"
#include "core/output/StringWritable.h"

namespace {

// Writes to any kind of sink.
void Report(Quenda::Writable& out, int channels) {
    out.Printf("%d channels\n", channels);
}

// Says when a list takes it in and when it leaves the list.
class Announcer : public Quenda::StdioWritable {
public:
    Announcer() : StdioWritable(stdout) {}
    void AttachList(Quenda::TraceListIntf* list) override {
        StdioWritable::AttachList(list);
        Puts("announcer: in a list\n");
    }
    void DetachList(Quenda::TraceListIntf* list) override {
        StdioWritable::DetachList(list);
        Puts("announcer: out of it\n");
    }
};

}  // namespace

int main() {
    setlinebuf(stdout);  // keeps the order of lines on both streams
    Announcer announcer;
    {
        Quenda::TraceList list;
        list.AddSink(2, &announcer);
        list.RemoveSink(&announcer);
        list.AddSink(-3, &announcer);
        list.TraceAll("announcer: whatever its level\n");
    }
    Quenda::StdioWritable console(stdout);
    Report(console, 3);

    Quenda::TraceList& traces = Quenda::GlobalTraceList();
    traces.AddSink(2, &console);
    {
        Quenda::StringWritable all;
        traces.AddSink(9, &all);
        traces.Trace(2, "channel %d opened\n", 1);   // to both
        traces.Trace(9, "channel %d, slot 7\n", 1);  // to `all` alone
        console.Printf("collected:\n%s", all.Text().c_str());
    }  // `all` has taken itself out of the list
    traces.Trace(2, "channel %d closed\n", 1);

    Quenda::LogMessage(0, "The log calls go to standard error, and to syslog once it is open\n");
}
