@0x9f3c6a4be1d27a58;

using Cxx = import "/capnp/c++.capnp";
$Cxx.namespace("field::capn");

struct Process {
    id @0 :UInt32;
    name @1 :Text;
    clock @2 :UInt32;
}

struct Parameter {
    name @0 :Text;
    value @1 :UInt64;
    type @2 :UInt32;
    flags @3 :UInt32;
}

struct Module {
    index @0 :UInt32;
    process @1 :UInt32;
    type @2 :Text;
    name @3 :Text;
    fullName @4 :Text;
    parameters @5 :List(Parameter);
}

struct Register {
    name @0 :Text;
    address @1 :UInt32;
    value @2 :UInt64;
    msb @3 :UInt32;
    lsb @4 :UInt32;
    access @5 :UInt32;
    readOnly @6 :Bool;
    old @7 :Bool;
}

struct Link {
    alias @0 :Text;
    target @1 :Text;
    access @2 :UInt32;
    readOnly @3 :Bool;
}

struct Event {
    name @0 :Text;
    registerName @1 :Text;
    queue @2 :UInt32;
    bit @3 :UInt32;
    dataLength @4 :UInt32;
}

struct UserInfo {
    name @0 :Text;
    number @1 :UInt32;
    text @2 :Text;
}

struct Camera {
    channel @0 :UInt32;
    module @1 :UInt32;
}

struct Library {
    name @0 :Text;
    system @1 :UInt32;
    compressed @2 :Bool;
    content @3 :Data;
}

struct Configuration {
    index @0 :UInt32;
    fpgaType @1 :UInt32;
    board @2 :UInt32;
    revision @3 :UInt32;
    bitstream @4 :Data;
}

struct Design {
    processes @0 :List(Process);
    modules @1 :List(Module);
    registers @2 :List(Register);
    links @3 :List(Link);
    events @4 :List(Event);
    userInfos @5 :List(UserInfo);
    cameras @6 :List(Camera);
    libraries @7 :List(Library);
    configurations @8 :List(Configuration);
}
