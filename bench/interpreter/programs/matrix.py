# A 200 x 200 matrix filled and summed element by element, five times.
def main():
    a = [[0.0] * 200 for _ in range(200)]
    total = 0.0
    for k in range(5):
        for i in range(200):
            row = a[i]
            for j in range(200):
                row[j] = float(i + j + k)
        for i in range(200):
            for j in range(200):
                total = total + a[i][j]
    print(total)


main()
