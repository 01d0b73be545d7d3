// Storing and reading object graphs of growing size: the cost per object must stay flat.
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

#include "../benchlib.h"
#include "quill/objio.h"
#include "quill/qclass.h"

// A binary tree node; every third node also refers back to the root, so that
// references are written and resolved too.
class BenchTree : public Object {
    DECLARE_MEMBERS(BenchTree)
public:
    BenchTree(int value = 0, Object* left = nil, Object* right = nil, Object* root = nil)
        : value(value), left(left), right(right), root(root) {}
    BenchTree(std::istream& is, Object* where) : Object(is, where) {
        is >> value;
        left = readFrom(is);
        right = readFrom(is);
        root = readFrom(is);
    }
    void storer(std::ostream& os) const override {
        Object::storer(os);
        os << value << ' ';
        left->storeOn(os);
        right->storeOn(os);
        root->storeOn(os);
    }
    void deepDeleteContents() override {
        deepDelete(left);
        deepDelete(right);
    }
    int value;
    Object* left;
    Object* right;
    Object* root;
};

DEFINE_CLASS(BenchTree, Object, 1, 0)

namespace {

// A balanced tree of n nodes numbered from first.
Object* buildTree(int first, int n, Object* root) {
    if (n <= 0) return nil;
    BenchTree* node = new BenchTree(first);
    Object* top = root == nil ? node : root;
    int rest = n - 1;
    node->left = buildTree(first + 1, rest / 2, top);
    node->right = buildTree(first + 1 + rest / 2, rest - rest / 2, top);
    if (first % 3 == 0) node->root = top;
    return node;
}

void BM_StoreTree(benchmark::State& state) {
    startLibrary();
    Object* tree = buildTree(0, int(state.range(0)), nil);
    for (auto _ : state) {
        std::ostringstream os;
        storeObject(os, *tree);
        benchmark::DoNotOptimize(os.str().size());
    }
    deepDelete(tree);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ReadTree(benchmark::State& state) {
    startLibrary();
    Object* tree = buildTree(0, int(state.range(0)), nil);
    std::ostringstream os;
    storeObject(os, *tree);
    deepDelete(tree);
    std::string text = os.str();
    for (auto _ : state) {
        String error;
        Object* back = readFromString(error, text.c_str(), text.size());
        state.PauseTiming();
        deepDelete(back);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(BM_StoreTree)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_ReadTree)->RangeMultiplier(10)->Range(1000, 100000);
