# Struct and array elements in a loop: a hundred particles moved a thousand times.
class Particle:
    def __init__(self):
        self.x = 0.0
        self.v = 1.0


def main():
    cloud = [Particle() for _ in range(100)]
    for i in range(100):
        cloud[i].v = 0.01 * i
    for step in range(1000):
        for k in range(100):
            cloud[k].x = cloud[k].x + cloud[k].v
            if cloud[k].x > 5.0:
                cloud[k].v = -cloud[k].v
            if cloud[k].x < 0.0:
                cloud[k].v = -cloud[k].v
    centre = 0.0
    for j in range(100):
        centre += cloud[j].x
    print("centre", centre / 100)


main()
