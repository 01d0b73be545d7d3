// A first program: run it with  tarn -run hello.cxx
struct Item {
    string name;
    int count = 1;
    float price;
};

float total(Item& item) { return item.count * item.price; }

int main() {
    cout << "Hello from Tarn" << endl;
    Item basket[3];
    basket[0].name = "bolts";
    basket[0].count = 12;
    basket[0].price = 0.25;
    basket[1].name = "washers";
    basket[1].count = 40;
    basket[1].price = 0.05;
    basket[2].name = "motor";
    basket[2].price = 79.9;
    float sum = 0;
    for (int i = 0; i < basket.size(); i++) {
        cout << basket[i].name << ": " << total(basket[i]) << endl;
        sum += total(basket[i]);
    }
    cout << "total " << sum << endl;
    for (int n = 1; n <= 5; n++) cout << n << "^2 = " << n ^ 2 << endl;
    return 0;
}
