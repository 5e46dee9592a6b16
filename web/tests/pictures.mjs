// Takes the pictures of docs/web.md: node tests/pictures.mjs FOLDER
import { writeFile } from "node:fs/promises";
import { join } from "node:path";
import { Page } from "./browser.mjs";

const EXCHANGE = "r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 0 5";
const GAME =
    "1. e4 e5 2. Bc4 Nc6 3. Qh5 g6 4. Qf3 Nf6 5. g4 Bg7 6. g5 Nh5 7. Nh3 O-O 8. Qd3 d5 9. exd5 Nb4 10. Qb3 Bxh3 *";
const page = await Page.open({ width: 1180, height: 760 });

async function take(name) {
    await new Promise((resolve) => setTimeout(resolve, 1000));
    const { data } = await page.driver.sendAndGetDevToolsCommand("Page.captureScreenshot", {});
    await writeFile(join(process.argv[2], name), Buffer.from(data, "base64"));
}

await page.openText(EXCHANGE);
await page.click("#tab-thinking");
await page.click("#analyse");
await page.until(() => document.querySelectorAll("#pass-rows tr").length >= 6);
await page.click("#analyse");
await take("web-thinking.png");

await page.click("#why-not");
await page.clickMove("f3", "e5");
await page.until(() => document.querySelectorAll("#board .arrow.refutation").length > 0);
await take("web-why.png");

await page.openText(GAME);
await page.click("#tab-review");
await page.click("#review-start");
await page.until(() => !document.getElementById("review-save").hidden);
await page.click("#costly button");
await take("web-review.png");
await page.close();
