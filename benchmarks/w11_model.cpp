// W11: a model of 1.25 million vertices from the page cache into its vectors, and the memory given back.
#include "assets/models/ModelFile.h"

#include "w11_model_common.h"

#include <benchmark/benchmark.h>
#include <filesystem>

namespace
{
/// The file that every repetition loads; gone at the end of the program.
class SheetFile
{
public:
    SheetFile() : path(std::filesystem::temp_directory_path() / "w11.kaVelModel")
    {
        w11WriteBinary(w11Make(), path.c_str());
    }
    ~SheetFile() { std::filesystem::remove(path); }

    const std::filesystem::path path;
};

void load(benchmark::State &state)
{
    static const SheetFile file;
    const String name = String::copyFrom(file.path.string());
    std::size_t vertices = 0;
    for (auto _ : state)
    {
        ModelFile model;
        if (!model.load(name))
            return state.SkipWithError("the model did not load");
        vertices = model.getMesh(0).getVertexBufferData().size();
        benchmark::DoNotOptimize(model.getMesh(0).getVertexBufferData().data());
    }
    state.counters["check"] = double(vertices);
}
} // namespace

BENCHMARK(load)->Name("W11/load")->Unit(benchmark::kMillisecond);
