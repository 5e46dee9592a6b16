// Drives the page in headless Chromium.
import { Builder, By, Key, logging, until } from "selenium-webdriver";
import chrome from "selenium-webdriver/chrome.js";
import { resolve } from "node:path";
import { pathToFileURL } from "node:url";

export const PAGE = resolve(
    process.env.KESTRAN_PAGE ?? new URL("../../build/web/kestran.html", import.meta.url).pathname,
);
const CHROMIUM = process.env.CHROMIUM ?? "/usr/bin/chromium";
const DRIVER = process.env.CHROMEDRIVER ?? "/usr/bin/chromedriver";
const WAIT = 40_000;

// Runs before the page's own script.
const WATCH = `
    window.violations = [];
    document.addEventListener("securitypolicyviolation", event => violations.push(event.violatedDirective + " " + event.blockedURI));`;

export class Page {
    // With `trace`, the browser records all its tasks.
    static async open({ width = 1366, height = 900, trace = false } = {}) {
        const wanted = new logging.Preferences();
        wanted.setLevel(logging.Type.BROWSER, logging.Level.ALL);
        wanted.setLevel(logging.Type.PERFORMANCE, logging.Level.ALL);
        const options = new chrome.Options();
        options.setBinaryPath(CHROMIUM);
        options.addArguments(
            "--headless=new",
            "--no-sandbox",
            "--hide-scrollbars",
            "--disable-gpu",
            "--force-prefers-reduced-motion",
        );
        options.setLoggingPrefs(wanted);
        if (trace) {
            options.setPerfLoggingPrefs({
                traceCategories: "-*,disabled-by-default-devtools.timeline",
            });
        }
        const driver = await new Builder()
            .forBrowser("chrome")
            .setChromeOptions(options)
            .setChromeService(new chrome.ServiceBuilder(DRIVER))
            .build();
        const page = new Page(driver);
        await driver.sendDevToolsCommand("Page.addScriptToEvaluateOnNewDocument", {
            source: WATCH,
        });
        await driver.sendDevToolsCommand("Performance.enable", { timeDomain: "threadTicks" });
        await page.resize(width, height);
        await page.load();
        return page;
    }

    constructor(driver) {
        this.driver = driver;
    }

    async load(address = pathToFileURL(PAGE).href) {
        await this.driver.get(address);
        await this.until(() => document.body.dataset.ready);
    }

    resize(width, height) {
        return this.driver.sendDevToolsCommand("Emulation.setDeviceMetricsOverride", {
            width,
            height,
            deviceScaleFactor: 1,
            mobile: width < 500,
        });
    }

    run(script, ...values) {
        return this.driver.executeScript(script, ...values);
    }

    // Waits until a function of the page returns something.
    async until(condition, ...values) {
        return await this.driver.wait(
            () => this.run(condition, ...values),
            WAIT,
            `${condition} ${values}`,
            20,
        );
    }

    find(selector) {
        return this.driver.findElement(By.css(selector));
    }

    async click(selector) {
        await this.find(selector).click();
    }

    text(selector) {
        return this.run(
            (selector) => document.querySelector(selector).textContent.trim(),
            selector,
        );
    }

    async choose(selector, value) {
        await this.run(
            (selector, value) => {
                const element = document.querySelector(selector);
                element.value = value;
                element.dispatchEvent(new Event("change"));
            },
            selector,
            String(value),
        );
    }

    async press(...keys) {
        await this.driver
            .actions()
            .sendKeys(...keys)
            .perform();
    }

    moves() {
        return this.run(() =>
            [...document.querySelectorAll("#moves .move")].map((move) => move.textContent),
        );
    }

    async untilMoves(count) {
        await this.until(
            (count) => document.querySelectorAll("#moves .move").length >= count,
            count,
        );
        return await this.moves();
    }

    // A move by mouse: a drag, or two clicks.
    async drag(from, to) {
        const square = (name) => this.find(`[data-square=${name}]`);
        await this.driver.actions().dragAndDrop(square(from), square(to)).perform();
    }

    async clickMove(from, to) {
        await this.click(`[data-square=${from}]`);
        await this.click(`[data-square=${to}]`);
    }

    // Opens a text in the dialog. Resolves to the error that is shown, or to "".
    async openText(text) {
        await this.run((text) => {
            document.getElementById("open-dialog").open || document.getElementById("open").click();
            document.getElementById("open-text").value = text;
            document.getElementById("open-error").textContent = "";
            document.getElementById("open-load").click();
        }, text);
        return await this.until(() => {
            const error = document.getElementById("open-error").textContent;
            const isDone =
                error ||
                !document.getElementById("open-dialog").open ||
                document.getElementById("open-games").childElementCount > 0;
            return isDone ? { error } : null;
        }).then(({ error }) => error);
    }

    async startAnew() {
        await this.run(() => localStorage.clear());
        await this.load();
    }

    // What the browser's console says, and addresses that were asked for.
    async console() {
        const entries = await this.driver.manage().logs().get(logging.Type.BROWSER);
        return entries.map((entry) => `${entry.level.name} ${entry.message}`);
    }

    async requests() {
        return (await this.events("Network.requestWillBeSent")).map((event) => event.request.url);
    }

    async events(method) {
        const entries = await this.driver.manage().logs().get(logging.Type.PERFORMANCE);
        return entries
            .map((entry) => JSON.parse(entry.message).message)
            .filter((message) => message.method === method)
            .map((message) => message.params);
    }

    // The processor time of each task of a page's main thread, in milliseconds, from a trace.
    async taskTimes() {
        const events = await this.events("Tracing.dataCollected");
        const key = (event) => `${event.pid} ${event.tid}`;
        // The browser draws parts of its own window in such processes, too, but without workers.
        const hasWorkers = new Set(
            events
                .filter(
                    (event) =>
                        event.name === "TracingSessionIdForWorker" &&
                        event.args.data.url.startsWith("blob:"),
                )
                .map((event) => event.pid),
        );
        const main = new Set(
            events
                .filter(
                    (event) =>
                        event.name === "thread_name" &&
                        event.args.name === "CrRendererMain" &&
                        hasWorkers.has(event.pid),
                )
                .map(key),
        );
        return events
            .filter((event) => event.name === "RunTask" && main.has(key(event)) && event.tdur > 0)
            .map((event) => event.tdur / 1000);
    }

    // The processor time that the main thread has used, in milliseconds.
    async cpuTime() {
        const { metrics } = await this.driver.sendAndGetDevToolsCommand(
            "Performance.getMetrics",
            {},
        );
        return metrics.find((metric) => metric.name === "TaskDuration").value * 1000;
    }

    async close() {
        await this.driver.quit();
    }
}

export { By, Key, until };
