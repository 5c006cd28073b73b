// Serial records against protobuf messages of the same content: Serialize and
// ItemBase::Deserialize of four shapes beside SerializeToString and
// ParseFromArray. Each side makes a fresh owned buffer per record (Oru's
// payload, protobuf's string) and a fresh object per read (Oru's Item from the
// dispatch on the heap; a protobuf message on the stack and, the same work as
// Oru's, on the heap). The array shape also runs against a protobuf `bytes`
// field and against the floors of any decoder: memcpy, a byte-swapping copy,
// and allocate + byte-swapping copy + free. Counters: records per second,
// heap allocations per record, bytes on the wire.
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <legacy/oru/oru.h>
#include <orubench/peers.pb.h>

#include "measure.h"

namespace {

using namespace Legacy::Oru;

using ItemPtr = boost::intrusive_ptr<ItemBase>;

unsigned int const k_id = 0x00001234;

std::string Text(std::size_t size, unsigned int seed) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text.push_back(static_cast<char>('a' + (seed + i * 7) % 26));
    }
    return text;
}

struct U32Shape {
    static char const* Name() { return "U32"; }
    static ItemPtr MakeItem() { return ItemPtr(NumericItem<U32Traits>::Create(k_id, 3000000021u)); }
    static orubench::U32Setting MakeMessage() {
        orubench::U32Setting message;
        message.set_id(k_id);
        message.set_value(3000000021u);
        return message;
    }
};

struct StringShape {
    static char const* Name() { return "String32"; }
    static ItemPtr MakeItem() { return ItemPtr(StringItem::Create(k_id, Text(32, 1))); }
    static orubench::StringSetting MakeMessage() {
        orubench::StringSetting message;
        message.set_id(k_id);
        message.set_value(Text(32, 1));
        return message;
    }
};

// Values over the whole 16-bit range, so that varints take one to three bytes.
std::uint16_t ArrayElement(std::size_t i) {
    return static_cast<std::uint16_t>(i * 2654435761u >> 7);
}

struct U16ArrayShape {
    static char const* Name() { return "U16Array1000"; }
    using BytesMessage = orubench::U16ArrayBytesSetting;
    // Big-endian, as an Oru record holds them.
    static BytesMessage MakeBytesMessage() {
        BytesMessage message;
        message.set_id(k_id);
        std::string bytes;
        for (std::size_t i = 0; i < 1000; ++i) {
            std::uint16_t const value = ArrayElement(i);
            bytes.push_back(static_cast<char>(value >> 8));
            bytes.push_back(static_cast<char>(value & 0xFF));
        }
        message.set_values(bytes);
        return message;
    }
    static ItemPtr MakeItem() {
        std::vector<std::uint16_t> values;
        for (std::size_t i = 0; i < 1000; ++i) {
            values.push_back(ArrayElement(i));
        }
        auto* const item = new NumericArrayItem<U16Traits>(k_id);
        item->SetVal(values);
        return ItemPtr(item);
    }
    static orubench::U16ArraySetting MakeMessage() {
        orubench::U16ArraySetting message;
        message.set_id(k_id);
        for (std::size_t i = 0; i < 1000; ++i) {
            message.add_values(ArrayElement(i));
        }
        return message;
    }
};

// 100 children cycling through five families: U32, S16, Bool, an 8-byte
// String and Double.
struct CompositeShape {
    static char const* Name() { return "Composite100"; }
    static unsigned int ChildId(std::size_t i) { return k_id + 1 + static_cast<unsigned int>(i); }
    static ItemPtr MakeItem() {
        auto* const composite = new CompositeItem(k_id);
        ItemPtr const keep(composite);
        for (std::size_t i = 0; i < 100; ++i) {
            unsigned int const id = ChildId(i);
            switch (i % 5) {
                case 0:
                    composite->AddItem(ItemPtr(NumericItem<U32Traits>::Create(id, 70000u + i)));
                    break;
                case 1:
                    composite->AddItem(ItemPtr(NumericItem<S16Traits>::Create(
                        id, static_cast<std::int16_t>(-300 - static_cast<int>(i)))));
                    break;
                case 2:
                    composite->AddItem(ItemPtr(BoolItem::Create(id, i % 2 == 0)));
                    break;
                case 3:
                    composite->AddItem(ItemPtr(StringItem::Create(id, Text(8, i))));
                    break;
                default:
                    composite->AddItem(ItemPtr(NumericItem<DoubleTraits>::Create(id, 1000.0 + i)));
                    break;
            }
        }
        return keep;
    }
    static orubench::CompositeSetting MakeMessage() {
        orubench::CompositeSetting message;
        message.set_id(k_id);
        for (std::size_t i = 0; i < 100; ++i) {
            orubench::Child* const child = message.add_children();
            child->set_id(ChildId(i));
            switch (i % 5) {
                case 0:
                    child->set_u32(70000u + static_cast<unsigned int>(i));
                    break;
                case 1:
                    child->set_s16(-300 - static_cast<int>(i));
                    break;
                case 2:
                    child->set_flag(i % 2 == 0);
                    break;
                case 3:
                    child->set_text(Text(8, static_cast<unsigned int>(i)));
                    break;
                default:
                    child->set_real(1000.0 + static_cast<double>(i));
                    break;
            }
        }
        return message;
    }
};

std::string Label(char const* operation, char const* peer, char const* shape) {
    return std::string(operation) + "/" + peer + "/" + shape;
}

template <class Shape>
void BM_Serialize_Oru(benchmark::State& state) {
    ItemPtr const item = Shape::MakeItem();
    std::uint64_t bytes = 0;
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("Serialize", "Oru", Shape::Name()));
        for (auto _ : state) {
            ItemBase::SerialStruct_t record;
            int const code = item->Serialize(&record);
            benchmark::DoNotOptimize(code);
            benchmark::DoNotOptimize(record.GetData());
            bytes = 10 + record.GetDataSize();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.counters["bytes"] = static_cast<double>(bytes);
    state.SetItemsProcessed(state.iterations());
}

// Writes a protobuf message to a string, as a peer of Serialize.
template <class Message>
void SerializeMessage(benchmark::State& state, Message const& message, char const* peer,
                      char const* shape) {
    std::uint64_t bytes = 0;
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("Serialize", peer, shape));
        for (auto _ : state) {
            std::string out;
            bool const done = message.SerializeToString(&out);
            benchmark::DoNotOptimize(done);
            benchmark::DoNotOptimize(out.data());
            bytes = out.size();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.counters["bytes"] = static_cast<double>(bytes);
    state.SetItemsProcessed(state.iterations());
}

template <class Shape>
void BM_Serialize_Protobuf(benchmark::State& state) {
    SerializeMessage(state, Shape::MakeMessage(), "Protobuf", Shape::Name());
}

template <class Shape>
void BM_Deserialize_Oru(benchmark::State& state) {
    ItemPtr const original = Shape::MakeItem();
    ItemBase::SerialStruct_t record;
    original->Serialize(&record);
    ItemBase::ConstSerialStruct_t const view(record);
    // One read outside the loop proves the record round-trips.
    {
        ItemPtr check;
        if (ItemBase::Deserialize(&view, check) != 0 || !check->IsEqualValue(original)) {
            state.SkipWithError("the record does not read back");
            return;
        }
    }
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("Deserialize", "Oru", Shape::Name()));
        for (auto _ : state) {
            ItemPtr item;
            int const code = ItemBase::Deserialize(&view, item);
            benchmark::DoNotOptimize(code);
            benchmark::DoNotOptimize(item.get());
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}

// Beside the dispatch: the record read into an Item that exists already, as
// a reader that keeps its settings does. Not for composites, whose reading
// appends children.
template <class Shape>
void BM_DeserializeInPlace_Oru(benchmark::State& state) {
    ItemPtr const original = Shape::MakeItem();
    ItemBase::SerialStruct_t record;
    original->Serialize(&record);
    ItemBase::ConstSerialStruct_t const view(record);
    ItemPtr const target(original->DeepCopy());
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state,
                                              Label("DeserializeInPlace", "Oru", Shape::Name()));
        for (auto _ : state) {
            int const code = target->Deserialize(&view);
            benchmark::DoNotOptimize(code);
        }
    }
    Bench::ReportAllocations(state, allocations);
    if (!target->IsEqualValue(original)) {
        state.SkipWithError("the record does not read back");
    }
    state.SetItemsProcessed(state.iterations());
}

// Parses bytes into a message on the stack per read: the timed loop of both
// protobuf readers.
template <class Message>
void ParseMessages(benchmark::State& state, std::string const& bytes, char const* peer,
                   char const* shape) {
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("Deserialize", peer, shape));
        for (auto _ : state) {
            Message message;
            bool const done = message.ParseFromArray(bytes.data(), static_cast<int>(bytes.size()));
            benchmark::DoNotOptimize(done);
            benchmark::DoNotOptimize(message);
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}

template <class Shape>
void BM_Deserialize_Protobuf(benchmark::State& state) {
    auto const original = Shape::MakeMessage();
    using Message = typename std::remove_const<decltype(original)>::type;
    std::string const bytes = original.SerializeAsString();
    {
        Message check;
        if (!check.ParseFromArray(bytes.data(), static_cast<int>(bytes.size())) ||
            check.SerializeAsString() != bytes) {
            state.SkipWithError("the message does not read back");
            return;
        }
    }
    ParseMessages<Message>(state, bytes, "Protobuf", Shape::Name());
}

// The same parse into a message on the heap, made and freed per read: the
// work Oru's dispatch does, whose Item lives on the heap.
template <class Shape>
void BM_DeserializeHeap_Protobuf(benchmark::State& state) {
    auto const original = Shape::MakeMessage();
    using Message = typename std::remove_const<decltype(original)>::type;
    std::string const bytes = original.SerializeAsString();
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state,
                                              Label("DeserializeHeap", "Protobuf", Shape::Name()));
        for (auto _ : state) {
            std::unique_ptr<Message> message(new Message());
            bool const done = message->ParseFromArray(bytes.data(), static_cast<int>(bytes.size()));
            benchmark::DoNotOptimize(done);
            benchmark::DoNotOptimize(message.get());
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}

// The array as a `bytes` field: written and read as one block.
template <class Shape>
void BM_Serialize_ProtobufBytes(benchmark::State& state) {
    SerializeMessage(state, Shape::MakeBytesMessage(), "ProtobufBytes", Shape::Name());
}

template <class Shape>
void BM_Deserialize_ProtobufBytes(benchmark::State& state) {
    using Message = typename Shape::BytesMessage;
    std::string const bytes = Shape::MakeBytesMessage().SerializeAsString();
    ParseMessages<Message>(state, bytes, "ProtobufBytes", Shape::Name());
}

// The floors of reading or writing 1,000 big-endian 16-bit numbers: what no
// decoder of this layout can go below.
std::vector<unsigned char> ArrayWire() {
    std::vector<unsigned char> wire;
    for (std::size_t i = 0; i < 1000; ++i) {
        std::uint16_t const value = ArrayElement(i);
        wire.push_back(static_cast<unsigned char>(value >> 8));
        wire.push_back(static_cast<unsigned char>(value & 0xFF));
    }
    return wire;
}

void SwapCopy(std::uint16_t* out, unsigned char const* in, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::uint16_t value;
        std::memcpy(&value, in + 2 * i, sizeof value);
        out[i] = __builtin_bswap16(value);
    }
}

void BM_Floor_Memcpy(benchmark::State& state) {
    std::vector<unsigned char> const wire = ArrayWire();
    std::vector<std::uint16_t> out(1000);
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, "Floor/Memcpy/U16Array1000");
        for (auto _ : state) {
            benchmark::DoNotOptimize(wire.data());
            std::memcpy(out.data(), wire.data(), wire.size());
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Floor_Memcpy);

void BM_Floor_SwapCopy(benchmark::State& state) {
    std::vector<unsigned char> const wire = ArrayWire();
    std::vector<std::uint16_t> out(1000);
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, "Floor/SwapCopy/U16Array1000");
        for (auto _ : state) {
            benchmark::DoNotOptimize(wire.data());
            SwapCopy(out.data(), wire.data(), 1000);
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Floor_SwapCopy);

void BM_Floor_AllocSwapFree(benchmark::State& state) {
    std::vector<unsigned char> const wire = ArrayWire();
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, "Floor/AllocSwapFree/U16Array1000");
        for (auto _ : state) {
            benchmark::DoNotOptimize(wire.data());
            std::unique_ptr<std::uint16_t[]> const out(new std::uint16_t[1000]);
            SwapCopy(out.get(), wire.data(), 1000);
            benchmark::DoNotOptimize(out.get());
            benchmark::ClobberMemory();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Floor_AllocSwapFree);

#define ORU_SERIAL_BENCHMARKS(Shape)                    \
    BENCHMARK_TEMPLATE(BM_Serialize_Oru, Shape);        \
    BENCHMARK_TEMPLATE(BM_Serialize_Protobuf, Shape);   \
    BENCHMARK_TEMPLATE(BM_Deserialize_Oru, Shape);      \
    BENCHMARK_TEMPLATE(BM_Deserialize_Protobuf, Shape); \
    BENCHMARK_TEMPLATE(BM_DeserializeHeap_Protobuf, Shape)

ORU_SERIAL_BENCHMARKS(U32Shape);
BENCHMARK_TEMPLATE(BM_DeserializeInPlace_Oru, U32Shape);
BENCHMARK_TEMPLATE(BM_DeserializeInPlace_Oru, StringShape);
BENCHMARK_TEMPLATE(BM_DeserializeInPlace_Oru, U16ArrayShape);
ORU_SERIAL_BENCHMARKS(StringShape);
ORU_SERIAL_BENCHMARKS(U16ArrayShape);
BENCHMARK_TEMPLATE(BM_Serialize_ProtobufBytes, U16ArrayShape);
BENCHMARK_TEMPLATE(BM_Deserialize_ProtobufBytes, U16ArrayShape);
ORU_SERIAL_BENCHMARKS(CompositeShape);

}  // namespace

BENCHMARK_MAIN();
